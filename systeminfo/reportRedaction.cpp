#include "systeminfo/privacy/environmentVariables.h"
#include "systeminfo/privacy/fixedForms.h"
#include "systeminfo/reportPrivacy.h"
#include "systeminfo/reportPrivate.h"

#include <functional>
#include <vector>

namespace norvex::SystemInfo {

using namespace Internal;
using Privacy::FixedForms;
using Privacy::PrivateKind;

class CRedactorPrivate
{
public:
    FixedForms forms;
};

namespace {

/// Takes the stretches of a report in which private values may stand, from its begin to its end.
class Stretches
{
public:
    virtual ~Stretches() = default;

    virtual void take(int begin, int end, PrivateKind kind) = 0;
    /// The same of a label that says what its value is. With a private value in it, it is hidden instead, and false.
    virtual bool takeLabel(int begin, int end) = 0;
    /// What shows nothing, not even its length.
    virtual void hide(int begin, int end) = 0;
};

/// Counts the percent of the texts that are walked through, each once, and asks whether to go on.
class Progress
{
public:
    using GoesOn = std::function<bool(int percent)>;

    Progress(int texts, const GoesOn& goesOn) : texts_(texts), goesOn_(goesOn) {}

    bool isEnded() const { return isEnded_; }
    void nextText() { ++walked_; }
    /// @param place in a text of that size, in ascending order
    bool goesOn(int place, int size)
    {
        const int percent = static_cast<int>((walked_ + 1.0 * place / qMax(size, 1)) * 100 / texts_);
        if (percent != percent_) {
            percent_ = percent;
            isEnded_ = isEnded_ || !goesOn_(percent);
        }
        return !isEnded_;
    }

private:
    const int texts_;
    const GoesOn& goesOn_;
    int walked_ = 0;
    int percent_ = -1;
    bool isEnded_ = false;
};

class Walk
{
public:
    Walk(const CReportPrivate& report, Stretches& stretches, Progress& progress)
        : text_(report.text), stretches_(stretches), progress_(progress)
    {
        for (int part = 0; part < report.parts.size() && goesOn(report.parts.at(part).begin); ++part) {
            takePart(report.parts.at(part), report.endOf(part));
        }
        progress_.nextText();
    }

private:
    bool goesOn(int place) { return progress_.goesOn(place, text_.size()); }
    void takePart(const Part& part, int end);
    void takePieces(const Container& container, const SectionPrivacy& privacy);
    void takeEntry(const Piece& piece, const Container& container, const SectionPrivacy& privacy);
    void takeVariable(const Piece& variable);
    void takeList(const Piece& piece, PrivateKind kind);
    void takeLines(int begin, int end, PrivateKind kind);

    /// Leaves out line ends, blanks around a value, and the apostrophes around a quoted one.
    void take(int begin, int end, PrivateKind kind, bool isQuoted = false);

    const QString& text_;
    Stretches& stretches_;
    Progress& progress_;
    bool isBluetooth_ = false; ///< whether this block says so
};

void Walk::takePart(const Part& part, int end)
{
    if (part.type == Part::Lines) {
        takeLines(part.begin, end, PrivateKind::None);
    } else if (part.type == Part::Section) {
        const SectionPrivacy& privacy = SectionPrivacy::of(part.format());
        const Container content = contentOf(text_, part, end);
        if (part.format() == nullptr) {
            takeLines(part.begin, content.begin, PrivateKind::None); // the heading
        }
        takePieces(content, privacy);
    }
}

void Walk::takePieces(const Container& container, const SectionPrivacy& privacy)
{
    const bool isBlock = container.ownLines > 0;
    PieceReader reader(text_, container);
    for (Piece piece; reader.next(piece) && goesOn(piece.begin);) {
        if (piece.type == Piece::Block) {
            isBluetooth_ = SectionPrivacy::isBluetooth(text_, piece, *container.format);
            takePieces(contentOf(piece, *container.format), privacy);
            isBluetooth_ = false;
        } else if (piece.type == Piece::Entry) {
            takeEntry(piece, container, privacy);
        } else {
            takeLines(piece.begin, piece.end, isBlock ? privacy.blockKind() : privacy.otherKind());
        }
    }
}

void Walk::takeEntry(const Piece& piece, const Container& container, const SectionPrivacy& privacy)
{
    const SectionFormat* const format = container.format;
    if (format != nullptr && format == environmentFormat()) {
        takeVariable(piece);
        return;
    }
    const EntryPlace& entry = piece.entry;
    const PrivateKind kind = privacy.valueKind(text_, entry, isBluetooth_);
    const bool isTelling = format == nullptr && kind != PrivateKind::None;
    if (!isTelling) {
        take(piece.begin, entry.labelEnd, privacy.otherKind());
    } else if (!stretches_.takeLabel(entry.labelBegin, entry.labelEnd)) {
        if (entry.valueBegin != entry.valueEnd) {
            stretches_.hide(entry.valueBegin, entry.valueEnd);
        }
        return;
    }
    if (isList(entry)) {
        takeList(piece, kind);
    } else {
        take(entry.valueBegin, entry.valueEnd, kind, format != nullptr && format->isQuoted);
    }
}

/// Each line of the list is a value.
void Walk::takeList(const Piece& piece, PrivateKind kind)
{
    static const QLatin1String defaultMark("    [default printer]");
    int position = piece.begin;
    if (piece.entry.format->kind == ValueKind::IndentedList) {
        take(piece.entry.valueBegin, piece.entry.valueEnd, kind);
    }
    for (position = lineAt(text_, position).next; position < piece.end;) {
        const Line line = lineAt(text_, position);
        const bool isDefault = text_.midRef(line.begin, line.end - line.begin).endsWith(defaultMark);
        take(line.begin, line.end - (isDefault ? defaultMark.size() : 0), kind);
        position = line.next;
    }
}

/// The lines of an unknown value have one form on the first one; of the others not even the length shows.
void Walk::takeVariable(const Piece& variable)
{
    const EntryPlace& entry = variable.entry;
    const Line first = lineAt(text_, variable.begin);
    const bool isLong = first.next < variable.end;
    PrivateKind kind = Privacy::kindOfVariable(labelOf(text_, entry));
    if (isLong && kind != PrivateKind::None) {
        kind = PrivateKind::Token;
    }
    stretches_.take(entry.valueBegin, first.end, kind);
    for (int position = first.next; position < variable.end;) {
        const Line line = lineAt(text_, position);
        if (kind == PrivateKind::None) {
            stretches_.take(line.begin, line.end, kind);
        } else {
            stretches_.hide(line.begin, line.end);
        }
        position = line.next;
    }
}

void Walk::takeLines(int begin, int end, PrivateKind kind)
{
    while (begin < end) {
        const Line line = lineAt(text_, begin);
        if (kind == PrivateKind::Token) {
            stretches_.hide(line.begin, line.end);
        } else {
            take(line.begin, line.end, kind);
        }
        begin = line.next;
    }
}

void Walk::take(int begin, int end, PrivateKind kind, bool isQuoted)
{
    const auto has = [this](int place, char c) { return text_.at(place) == QLatin1Char(c); };
    while (begin < end && has(begin, ' ')) {
        ++begin;
    }
    while (begin < end && has(end - 1, ' ')) {
        --end;
    }
    if (isQuoted && end - begin > 1 && has(begin, '\'') && has(end - 1, '\'')) {
        take(begin + 1, end - 1, kind);
    } else if (begin < end) {
        stretches_.take(begin, end, kind);
    }
}

class Learning : public Stretches
{
public:
    Learning(const QString& text, FixedForms& forms) : text_(text), forms_(forms) {}

    void take(int begin, int end, PrivateKind kind) override
    {
        forms_.learn(text_.mid(begin, end - begin), kind);
    }
    bool takeLabel(int begin, int end) override
    {
        take(begin, end, PrivateKind::Model);
        return true;
    }
    void hide(int, int) override {}

private:
    const QString& text_;
    FixedForms& forms_;
};

QString ellipsis()
{
    return QString(QChar(0x2026));
}

/// A text that is made of another one by replacing stretches.
class Replacement
{
public:
    explicit Replacement(const QString& text) : text_(text) {}

    /// @return where the replacement begins in the new text
    int replace(int begin, int end, const QString& replacement)
    {
        result_ += text_.midRef(copied_, begin - copied_);
        result_ += replacement;
        copied_ = end;
        return result_.size() - replacement.size();
    }

    QString text() { return result_ += text_.midRef(copied_); }

private:
    const QString& text_;
    QString result_;
    int copied_ = 0;
};

/// Whether a line with this text would be a label and a value.
bool isEntry(const QString& text)
{
    const int colon = text.indexOf(QLatin1Char(':'));
    return colon != -1 && (colon + 1 == text.size() || text.at(colon + 1) == QLatin1Char(' '));
}

/// The text with its private values replaced. It stays what it is, or else its label could say more the next time.
QString replacedLine(const FixedForms& forms, const QString& text, PrivateKind kind)
{
    QString replaced = forms.replaced(text, kind);
    return isEntry(replaced) && !isEntry(text) ? ellipsis() : replaced;
}

/// A stretch in which something was replaced.
struct Changed
{
    int begin;
    int size;
    PrivateKind kind;
};

class Replacing : public Stretches
{
public:
    Replacing(const QString& text, const FixedForms& forms) : text_(text), forms_(forms), replacement_(text)
    {}

    void take(int begin, int end, PrivateKind kind) override
    {
        const QString original = text_.mid(begin, end - begin);
        const QString replaced = replacedLine(forms_, original, kind);
        if (replaced == original) {
            return;
        }
        const int place = replacement_.replace(begin, end, replaced);
        if (kind != PrivateKind::Token) {
            changed_.push_back({place, replaced.size(), kind});
        }
    }
    bool takeLabel(int begin, int end) override
    {
        const QString original = text_.mid(begin, end - begin);
        const bool stays = forms_.replaced(original, PrivateKind::Model) == original;
        if (!stays) {
            hide(begin, end);
        }
        return stays;
    }
    void hide(int begin, int end) override { replacement_.replace(begin, end, ellipsis()); }

    QString text() { return replacement_.text(); }
    const std::vector<Changed>& changed() const { return changed_; }

private:
    const QString& text_;
    const FixedForms& forms_;
    Replacement replacement_;
    std::vector<Changed> changed_;
};

/// What has been replaced may make its surroundings look private. So each stretch is looked at until it stays as it is,
/// which is what makes a redacted report stay when it is redacted again. One that never does is hidden.
QString settled(QString text, std::vector<Changed> changed, FixedForms& forms)
{
    constexpr int mostRounds = 8;
    for (int round = 1; !changed.empty(); ++round) {
        for (const Changed& stretch : changed) {
            forms.learn(text.mid(stretch.begin, stretch.size), stretch.kind);
        }
        forms.settle();
        Replacement replacement(text);
        std::vector<Changed> again;
        for (const Changed& stretch : changed) {
            const QString original = text.mid(stretch.begin, stretch.size);
            QString replaced = replacedLine(forms, original, stretch.kind);
            if (replaced != original) {
                replaced = round < mostRounds ? replaced : ellipsis();
                const int place = replacement.replace(stretch.begin, stretch.begin + stretch.size, replaced);
                again.push_back({place, replaced.size(), stretch.kind});
            }
        }
        text = replacement.text();
        changed = round < mostRounds ? again : std::vector<Changed>();
    }
    return text;
}

void learn(const CReportPrivate& report, FixedForms& forms, Progress& progress)
{
    Learning learning(report.text, forms);
    Walk(report, learning, progress);
    forms.settle();
}

} // namespace

CRedactor::CRedactor() : d(new CRedactorPrivate) {}

CRedactor::~CRedactor() = default;

void CRedactor::collect(const CReport& report)
{
    if (!report.isNull()) {
        const Progress::GoesOn always = [](int) { return true; };
        Progress progress(1, always);
        learn(*report.d, d->forms, progress);
    }
}

CReport CReport::redacted(CRedactor* redactor) const
{
    return redacted(redactor, [](int) { return true; });
}

CReport CReport::redacted(CRedactor* redactor, const std::function<bool(int percent)>& goesOn) const
{
    if (isNull()) {
        return CReport();
    }
    CRedactor own;
    CRedactor& used = redactor != nullptr ? *redactor : own;
    Progress progress(2, goesOn);
    learn(*d, used.d->forms, progress);
    Replacing replacing(d->text, used.d->forms);
    Walk(*d, replacing, progress);
    return progress.isEnded() ? CReport()
                              : fromText(settled(replacing.text(), replacing.changed(), used.d->forms));
}

} // namespace norvex::SystemInfo
