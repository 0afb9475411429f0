#include "systeminfo/privacy/environmentVariables.h"
#include "systeminfo/privacy/fixedForms.h"
#include "systeminfo/quotedReport.h"
#include "systeminfo/reportPrivacy.h"
#include "systeminfo/reportPrivate.h"

#include <algorithm>
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

/// What a walk through a text is of the whole work, from 0 to 1.
struct Share
{
    double begin;
    double end;

    double at(int place, int size) const { return begin + (end - begin) * place / std::max(size, 1); }
};

/// Tells each percent of the work once, and asks whether to go on.
class Progress
{
public:
    using GoesOn = std::function<bool(int percent)>;

    explicit Progress(const GoesOn& goesOn) : goesOn_(goesOn) {}

    bool isEnded() const { return isEnded_; }
    /// @param done share of the work; it does not become smaller
    bool goesOn(double done)
    {
        const int percent = static_cast<int>(done * 100);
        if (percent != percent_) {
            percent_ = percent;
            isEnded_ = isEnded_ || !goesOn_(percent);
        }
        return !isEnded_;
    }

private:
    const GoesOn& goesOn_;
    int percent_ = -1;
    bool isEnded_ = false;
};

class Walk
{
public:
    /// @param depth of a report that is quoted by one that is quoted, and so on
    Walk(const CReportPrivate& report, Stretches& stretches, Progress& progress, const Share& share,
         int depth = 0)
        : report_(report), text_(report.text), stretches_(stretches), progress_(progress), share_(share),
          depth_(depth)
    {
        for (int part = 0; part < report.parts.size() && goesOn(report.parts.at(part).begin);) {
            int end = part;
            while (end < report.parts.size() && mayQuote(report.parts.at(end))) {
                ++end;
            }
            takeParts(part, end);
            part = std::max(part + 1, end);
        }
    }

private:
    static bool mayQuote(const Part& part)
    {
        const bool isEnvironment = part.type == Part::Section && part.format() == environmentFormat();
        return !isEnvironment && (part.type == Part::Section || part.type == Part::Lines);
    }

    bool goesOn(int place) { return progress_.goesOn(share_.at(place, text_.size())); }
    void takeParts(int part, int endPart);
    int takeUnquoted(int part, int begin, int end);
    void takePart(const Part& part, int end);
    void takePieces(const Container& container, const SectionPrivacy& privacy);
    void takeEntry(const Piece& piece, const Container& container, const SectionPrivacy& privacy);
    void takeVariable(const Piece& variable);
    void takeList(const Piece& piece, PrivateKind kind);
    void takeLines(int begin, int end, PrivateKind kind);
    void takeOtherLines(int begin, int end);

    /// Leaves out line ends, blanks around a value, and the apostrophes around a quoted one.
    void take(int begin, int end, PrivateKind kind, bool isQuoted = false);

    const CReportPrivate& report_;
    const QString& text_;
    Stretches& stretches_;
    Progress& progress_;
    const Share share_;
    const int depth_;
    bool isBluetooth_ = false; ///< whether this block says so
};

/// Takes the stretches of a report that the report with the others quotes.
class QuotedStretches : public Stretches
{
public:
    QuotedStretches(const QuotedReport& quoted, Stretches& stretches) : quoted_(quoted), stretches_(stretches)
    {}

    void take(int begin, int end, PrivateKind kind) override
    {
        // Between quoted lines stands what somebody wrote.
        const bool mayHaveNames = kind == PrivateKind::Model && !quoted_.isQuoted(begin);
        const int place = quoted_.placeOf(begin);
        stretches_.take(place, place + end - begin, mayHaveNames ? PrivateKind::None : kind);
    }
    bool takeLabel(int begin, int end) override
    {
        const int place = quoted_.placeOf(begin);
        return stretches_.takeLabel(place, place + end - begin);
    }
    void hide(int begin, int end) override
    {
        // What would stand behind a mark that is cut off would look like a line of its own the next time.
        if (!quoted_.isCutOff(begin)) {
            const int place = quoted_.placeOf(begin);
            stretches_.hide(place, place + end - begin);
        }
    }

private:
    const QuotedReport& quoted_;
    Stretches& stretches_;
};

/// Parts of which none is the environment or frames others, so that a quoted report may begin in one and end in another.
void Walk::takeParts(int part, int endPart)
{
    constexpr int deepest = 4;
    if (part == endPart) {
        takePart(report_.parts.at(part), report_.endOf(part));
        return;
    }
    const int end = report_.endOf(endPart - 1);
    for (int begin = report_.parts.at(part).begin; begin < end && goesOn(begin);) {
        const QuotedReport quoted(text_, begin, depth_ < deepest ? end : begin);
        part = takeUnquoted(part, begin, quoted.isNull() ? end : quoted.begin());
        begin = end;
        if (!quoted.isNull()) {
            QuotedStretches stretches(quoted, stretches_);
            const Share share = {share_.at(quoted.begin(), text_.size()),
                                 share_.at(quoted.end(), text_.size())};
            Walk(CReportPrivate(quoted.text()), stretches, progress_, share, depth_ + 1);
            begin = quoted.end();
        }
    }
}

/// @param part stands at the begin or before it
/// @return the part at the end
int Walk::takeUnquoted(int part, int begin, int end)
{
    while (begin < end) {
        while (report_.endOf(part) <= begin) {
            ++part;
        }
        const int partEnd = std::min(report_.endOf(part), end);
        if (begin == report_.parts.at(part).begin) {
            takePart(report_.parts.at(part), partEnd);
        } else {
            takePieces({nullptr, begin, partEnd, 0, false}, SectionPrivacy::of(nullptr));
        }
        begin = partEnd;
    }
    return part;
}

/// A label, "=" and a value.
bool readAssignment(const QString& text, const Line& line, EntryPlace& entry)
{
    constexpr int longestLabel = 60;
    const auto isBlankAt = [&text](int place) { return text.at(place).isSpace(); };
    int begin = line.begin;
    while (begin < line.end && isBlankAt(begin)) {
        ++begin;
    }
    int equals = begin;
    const auto isOfLabel = [](QChar c) {
        return c.isLetterOrNumber() || c == QLatin1Char(' ') || c == QLatin1Char('_') ||
               c == QLatin1Char('-');
    };
    while (equals < line.end && equals - begin < longestLabel && isOfLabel(text.at(equals))) {
        ++equals;
    }
    if (equals == begin || equals == line.end || text.at(equals) != QLatin1Char('=')) {
        return false;
    }
    entry = {begin, equals, equals + 1, line.end, nullptr};
    while (isBlankAt(entry.labelEnd - 1)) {
        --entry.labelEnd;
    }
    return true;
}

/// Whether the colon stands in a value: "Host=turm8: up".
bool isAssignment(const QString& text, const EntryPlace& entry)
{
    return text.midRef(entry.labelBegin, entry.labelEnd - entry.labelBegin).contains(QLatin1Char('='));
}

void Walk::takePart(const Part& part, int end)
{
    if (part.type == Part::Lines) {
        takeOtherLines(part.begin, end);
    } else if (part.type == Part::Section) {
        const SectionPrivacy& privacy = SectionPrivacy::of(part.format());
        const Container content = contentOf(text_, part, end);
        if (part.format() == nullptr) {
            takeOtherLines(part.begin, content.begin); // the heading
        }
        takePieces(content, privacy);
    }
}

void Walk::takePieces(const Container& container, const SectionPrivacy& privacy)
{
    const bool isBlock = container.ownLines > 0;
    const bool isUnknown = &privacy == &SectionPrivacy::of(nullptr);
    PieceReader reader(text_, container);
    for (Piece piece; reader.next(piece) && goesOn(piece.begin);) {
        if (piece.type == Piece::Block) {
            isBluetooth_ = SectionPrivacy::isBluetooth(text_, piece, *container.format);
            takePieces(contentOf(piece, *container.format), privacy);
            isBluetooth_ = false;
        } else if (isUnknown && (piece.type == Piece::Lines || isAssignment(text_, piece.entry))) {
            takeOtherLines(piece.begin, piece.end);
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

/// Lines of a section that is in no table, or of none. "Host name = turm8" is an entry, too.
void Walk::takeOtherLines(int begin, int end)
{
    const SectionPrivacy& privacy = SectionPrivacy::of(nullptr);
    while (begin < end && goesOn(begin)) {
        const Line line = lineAt(text_, begin);
        Piece piece = {Piece::Entry, line.begin, line.next, 0, {}};
        bool isTelling = readAssignment(text_, line, piece.entry);
        if (isTelling) {
            const PrivateKind kind = privacy.valueKind(text_, piece.entry, false);
            const bool isName = kind == PrivateKind::Person || kind == PrivateKind::Host;
            const QString value = valueOf(text_, piece, nullptr);
            isTelling =
                kind != PrivateKind::None &&
                (!isName || std::any_of(value.begin(), value.end(), [](QChar c) { return c.isLetter(); }));
        }
        if (isTelling) {
            takeEntry(piece, {nullptr, line.begin, line.next, 0, false}, privacy);
        } else {
            take(line.begin, line.end, PrivateKind::None);
        }
        begin = line.next;
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
    while (begin < end && goesOn(begin)) {
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

/// What a line with this text would be.
enum class LineShape { Text, Entry, Assignment };

LineShape shapeOf(const QString& text)
{
    const int colon = text.indexOf(QLatin1Char(':'));
    const bool hasLabel = colon != -1 && (colon + 1 == text.size() || text.at(colon + 1) == QLatin1Char(' '));
    if (hasLabel && !text.leftRef(colon).contains(QLatin1Char('='))) {
        return LineShape::Entry;
    }
    EntryPlace entry;
    return readAssignment(text, {0, text.size(), text.size()}, entry) ? LineShape::Assignment
                                                                      : LineShape::Text;
}

/// The text with its private values replaced. It stays what it is, or else its label could say more the next time.
QString replacedLine(const FixedForms& forms, const QString& text, PrivateKind kind)
{
    QString replaced = forms.replaced(text, kind);
    if (replaced == text) {
        return text;
    }
    const LineShape shape = shapeOf(replaced);
    return shape != LineShape::Text && shape != shapeOf(text) ? ellipsis() : replaced;
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

void learn(const CReportPrivate& report, FixedForms& forms, Progress& progress, const Share& share)
{
    Learning learning(report.text, forms);
    Walk(report, learning, progress, share);
    forms.settle();
}

} // namespace

CRedactor::CRedactor() : d(new CRedactorPrivate) {}

CRedactor::~CRedactor() = default;

void CRedactor::collect(const CReport& report)
{
    collect(report, [](int) { return true; });
}

void CRedactor::collect(const CReport& report, const std::function<bool(int percent)>& goesOn)
{
    if (!report.isNull()) {
        Progress progress(goesOn);
        learn(*report.d, d->forms, progress, {0, 1});
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
    Progress progress(goesOn);
    learn(*d, used.d->forms, progress, {0, 0.5});
    Replacing replacing(d->text, used.d->forms);
    Walk(*d, replacing, progress, {0.5, 1});
    return progress.isEnded() ? CReport()
                              : fromText(settled(replacing.text(), replacing.changed(), used.d->forms));
}

} // namespace norvex::SystemInfo
