#include "systeminfo/reportParts.h"

#include <algorithm>

namespace norvex::SystemInfo::Internal {

namespace {

/// Lines from one banner or separator to the next are a chunk. It holds one section or, when it is known to be a chunk
/// of a report because a separator closes it, the sections of one group. Elsewhere a section begins at each of its
/// first lines: sections printed alone have no separators.
class PartParser
{
public:
    explicit PartParser(const QString& text) : text_(text) {}

    QVector<Part> parse();

private:
    int takeLine(const Line& line);
    void takeContent(const Line& line, const SectionFormat* format);
    void append(int begin, Part::Type type, Half half, const SectionFormat* format = nullptr);
    void closeChunk(bool hasSeparator);

    const QString& text_;
    const SectionFormat* const formats_ = sectionFormats().data();
    const SectionFormat* const environment_ = environmentFormat();
    QVector<Part> parts_;
    int chunk_ = 0;                          // the first of its parts
    bool hasSection_ = false;                // in this chunk
    const SectionFormat* section_ = nullptr; // the last one of this chunk
    Half half_ = Half::None;
};

/// Where the environment ends that begins behind its heading. Its values may hold separators and headings, so only the
/// last ones count.
class EnvironmentEnd
{
public:
    EnvironmentEnd(const QString& text, int begin) : text_(text), begin_(begin) {}

    int find() const;

private:
    int openGLBehindSeparator(const Line& last) const;
    int openGLHeading() const;
    bool isOpenGLHeading(int begin) const;
    bool isOpenGL(int headingBegin) const;
    bool hasVariable(int begin) const;

    const QString& text_;
    const int begin_;
};

int EnvironmentEnd::find() const
{
    const Line separator = lastSeparator(text_, begin_, text_.size());
    if (separator.begin == -1) {
        return openGLHeading();
    }
    // Then the separator is a line of a value, and the environment is cut off or was printed alone.
    if (hasVariable(separator.next)) {
        return text_.size();
    }
    return openGLBehindSeparator(separator);
}

int EnvironmentEnd::openGLBehindSeparator(const Line& last) const
{
    for (Line separator = last; separator.begin != -1;
         separator = lastSeparator(text_, begin_, separator.begin)) {
        if (separator.next != text_.size() && isOpenGLHeading(separator.next)) {
            return isOpenGL(separator.next) ? separator.begin : last.begin;
        }
    }
    return last.begin;
}

int EnvironmentEnd::openGLHeading() const
{
    int found = text_.size();
    for (int position = begin_; position < text_.size(); position = lineAt(text_, position).next) {
        if (isOpenGLHeading(position)) {
            found = position;
        }
    }
    return found != text_.size() && isOpenGL(found) ? found : text_.size();
}

bool EnvironmentEnd::isOpenGLHeading(int begin) const
{
    return text_.at(begin) == QLatin1Char('#') &&
           isSection(sectionOf(text_, lineAt(text_, begin), Half::Qt), openGLSection);
}

/// The heading may be a line of a variable's value. Then what it begins does not read like that section, or more
/// variables follow.
bool EnvironmentEnd::isOpenGL(int headingBegin) const
{
    const int content = lineAt(text_, headingBegin).next;
    static const QLatin1String firstLabel("hasOpenGL");
    const QString start = text_.mid(content, firstLabel.size());
    if (!QString(firstLabel).startsWith(start)) {
        return false;
    }
    return !hasVariable(content);
}

bool EnvironmentEnd::hasVariable(int begin) const
{
    for (int position = begin; position < text_.size();) {
        const Line line = lineAt(text_, position);
        if (variableDelimiter(text_, line) != -1) {
            return true;
        }
        position = line.next;
    }
    return false;
}

QVector<Part> PartParser::parse()
{
    // Hardly any part is shorter. Growing would copy; what stays unused costs addresses alone.
    parts_.reserve(text_.size() / 7 + 2);
    for (int position = 0; position < text_.size();) {
        position = takeLine(lineAt(text_, position));
    }
    closeChunk(false);
    return parts_;
}

/// Where to go on.
int PartParser::takeLine(const Line& line)
{
    const QChar first = line.isEmpty() ? QChar() : text_.at(line.begin);
    if (first == QLatin1Char('-') && isSeparator(text_, line)) {
        closeChunk(true);
        append(line.begin, Part::Separator, Half::None);
        closeChunk(false);
        return line.next;
    }
    const Half banner = first == QLatin1Char('#') ? bannerHalf(text_, line) : Half::None;
    if (banner != Half::None) {
        closeChunk(false);
        half_ = banner;
        append(line.begin, Part::Banner, banner);
        closeChunk(false);
        return line.next;
    }
    const SectionFormat* const format = sectionOf(text_, line, half_);
    if (format != nullptr && format == environment_) {
        closeChunk(false);
        append(line.begin, Part::Section, half_, format);
        closeChunk(false);
        return EnvironmentEnd(text_, line.next).find();
    }
    takeContent(line, format);
    return line.next;
}

void PartParser::takeContent(const Line& line, const SectionFormat* format)
{
    if (!hasSection_ && format == nullptr && line.isEmpty()) {
        if (parts_.size() == chunk_) {
            append(line.begin, Part::Lines, Half::None);
        }
        return;
    }
    const bool isFurther = format != nullptr && (format != section_ || format->heading != nullptr);
    if (!hasSection_ || isFurther) {
        append(line.begin, Part::Section, half_, format);
        hasSection_ = true;
        section_ = format;
    }
}

void PartParser::append(int begin, Part::Type type, Half half, const SectionFormat* format)
{
    const auto index = format == nullptr ? Part::unknownFormat : static_cast<qint16>(format - formats_);
    parts_.append({begin, index, type, half});
}

/// Of the sections that a chunk with a separator was taken to have only the first one and others of its group stay.
void PartParser::closeChunk(bool hasSeparator)
{
    if (hasSeparator) {
        int kept = chunk_;
        const SectionFormat* last = nullptr;
        for (int part = chunk_; part < parts_.size(); ++part) {
            const SectionFormat* const format = parts_.at(part).format();
            const bool isInGroup = last != nullptr && format != nullptr && format > last &&
                                   format->half == last->half && format->group == last->group;
            const bool isFirst = kept == chunk_ || parts_.at(kept - 1).type != Part::Section;
            if (isFirst || isInGroup) {
                parts_[kept++] = parts_.at(part);
                last = format;
            }
        }
        parts_.resize(kept);
    }
    chunk_ = parts_.size();
    hasSection_ = false;
    section_ = nullptr;
}

/// Cuts the blanks at both ends off, and what is left of a damaged line end.
void trim(const QString& text, int& begin, int& end)
{
    const QLatin1Char blank(' ');
    while (begin < end && text.at(begin) == blank) {
        ++begin;
    }
    while (begin < end && (text.at(end - 1) == blank || text.at(end - 1) == QLatin1Char('\r'))) {
        --end;
    }
}

QString unquoted(const QString& value, const SectionFormat* format)
{
    const QLatin1Char quote('\'');
    const bool isQuoted = format != nullptr && format->isQuoted && value.size() > 1 &&
                          value.startsWith(quote) && value.endsWith(quote);
    return isQuoted ? value.mid(1, value.size() - 2) : value;
}

bool isVariable(const SectionFormat* format)
{
    return format != nullptr && format == environmentFormat();
}

bool readVariable(const QString& text, const Line& line, EntryPlace& entry)
{
    const int delimiter = variableDelimiter(text, line);
    if (delimiter == -1) {
        return false;
    }
    entry = {line.begin + 2, delimiter, delimiter + 1, line.end, nullptr};
    return true;
}

/// The label is the line's text up to its first colon, which is followed by a blank or by nothing.
bool readLabelAndValue(const QString& text, const Line& line, EntryPlace& entry)
{
    const QChar* const begin = text.constData() + line.begin;
    const QChar* const end = text.constData() + line.end;
    const QChar* const colon = std::find(begin, end, QLatin1Char(':'));
    if (colon == end || (colon + 1 != end && colon[1] != QLatin1Char(' '))) {
        return false;
    }
    const int colonPosition = static_cast<int>(colon - text.constData());
    entry = {line.begin, colonPosition, colonPosition + 1, line.end, nullptr};
    trim(text, entry.labelBegin, entry.labelEnd);
    trim(text, entry.valueBegin, entry.valueEnd);
    return entry.labelBegin != entry.labelEnd;
}

bool readFormatted(const QString& text, const Line& line, const EntryFormat& format, EntryPlace& entry)
{
    int begin = line.begin;
    int end = line.end;
    trim(text, begin, end);
    const int labelEnd = begin + static_cast<int>(qstrlen(format.label));
    if (!hasAt(text, begin, end, format.label) || (labelEnd < end && text.at(labelEnd) != QLatin1Char(' '))) {
        return false;
    }
    entry = {begin, labelEnd, labelEnd, end, &format};
    trim(text, entry.valueBegin, entry.valueEnd);
    if (format.delimiter == Delimiter::Equals) {
        if (!hasAt(text, entry.valueBegin, entry.valueEnd, "=")) {
            return false;
        }
        ++entry.valueBegin;
        trim(text, entry.valueBegin, entry.valueEnd);
    }
    return true;
}

const EntryFormat* entryFormat(const QString& text, const EntryPlace& entry, const SectionFormat& section)
{
    for (const EntryFormat& format : section.entries) {
        if (entry.labelEnd - entry.labelBegin == static_cast<int>(qstrlen(format.label)) &&
            hasAt(text, entry.labelBegin, entry.labelEnd, format.label)) {
            return &format;
        }
    }
    return nullptr;
}

bool readEntryOf(const QString& text, const Line& line, const SectionFormat* section, EntryPlace& entry)
{
    if (section == nullptr) {
        return readLabelAndValue(text, line, entry);
    }
    if (isVariable(section)) {
        return readVariable(text, line, entry);
    }
    for (const EntryFormat& format : section->entries) {
        if (format.delimiter != Delimiter::Colon && readFormatted(text, line, format, entry)) {
            return true;
        }
    }
    if (!readLabelAndValue(text, line, entry)) {
        return false;
    }
    entry.format = entryFormat(text, entry, *section);
    return true;
}

} // namespace

QVector<Part> partsOf(const QString& text)
{
    return PartParser(text).parse();
}

Line headingOf(const QString& text, const Part& part, int end)
{
    const Line none = {part.begin, part.begin, part.begin};
    Line first = lineAt(text, part.begin);
    first.next = qMin(first.next, end);
    const SectionFormat* const format = part.format();
    if (format != nullptr) {
        return format->heading != nullptr ? first : none;
    }
    EntryPlace entry;
    const bool hasValue = readLabelAndValue(text, first, entry) && entry.valueBegin != entry.valueEnd;
    return hasValue ? none : first;
}

Container contentOf(const QString& text, const Part& part, int end)
{
    const SectionFormat* const format = part.format();
    return {format, headingOf(text, part, end).next, end, 0, format != nullptr && format->blocks != nullptr};
}

Container contentOf(const Piece& block, const SectionFormat& format)
{
    return {&format, block.begin, block.end, format.blocks->ownLines, false};
}

PieceReader::PieceReader(const QString& text, const Container& container)
    : text_(text), container_(container), position_(container.begin), ownLines_(container.ownLines)
{}

bool PieceReader::next(Piece& piece)
{
    if (position_ >= container_.end) {
        return false;
    }
    const Line line = lineAt(text_, position_);
    piece.begin = line.begin;
    if (opensBlockHere(line)) {
        piece.type = Piece::Block;
        piece.end = blockEnd(line);
        piece.number = ++blocks_;
    } else if (ownLines_ == 0 && readEntry(line, piece.entry)) {
        piece.type = Piece::Entry;
        piece.end = entryEnd(line, piece.entry);
    } else {
        piece.type = Piece::Lines;
        piece.end = linesEnd(line);
    }
    position_ = piece.end;
    return true;
}

bool PieceReader::opensBlockHere(const Line& line) const
{
    return container_.hasBlocks && opensBlock(text_, line, *container_.format->blocks);
}

bool PieceReader::readEntry(const Line& line, EntryPlace& entry) const
{
    return readEntryOf(text_, line, container_.format, entry);
}

int PieceReader::blockEnd(const Line& first) const
{
    const BlockFormat& blocks = *container_.format->blocks;
    for (Line line = first;; line = lineAt(text_, line.next)) {
        if (blocks.closing == nullptr && line.begin != first.begin && opensBlock(text_, line, blocks)) {
            return line.begin;
        }
        if (closesBlock(text_, line, blocks) || line.next == container_.end) {
            return line.next;
        }
    }
}

int PieceReader::entryEnd(const Line& line, const EntryPlace& entry) const
{
    const auto goesOn = [&](const Line& further) {
        if (isVariable(container_.format)) {
            return variableDelimiter(text_, further) == -1;
        }
        if (!isList(entry) || further.isEmpty()) {
            return false;
        }
        return entry.format->kind == ValueKind::List ||
               (isBlank(text_, further.begin,
                        qMin(further.end, further.begin + entry.valueBegin - line.begin)) &&
                !isBlank(text_, further.begin, further.end));
    };
    int end = line.next;
    while (end < container_.end) {
        const Line further = lineAt(text_, end);
        if (!goesOn(further)) {
            break;
        }
        end = further.next;
    }
    return end;
}

int PieceReader::linesEnd(const Line& first)
{
    EntryPlace entry;
    int end = first.next;
    for (ownLines_ = qMax(0, ownLines_ - 1); end < container_.end; ownLines_ = qMax(0, ownLines_ - 1)) {
        const Line line = lineAt(text_, end);
        if (ownLines_ == 0 && (opensBlockHere(line) || readEntry(line, entry))) {
            break;
        }
        end = line.next;
    }
    return end;
}

QString labelOf(const QString& text, const EntryPlace& entry)
{
    return text.mid(entry.labelBegin, entry.labelEnd - entry.labelBegin);
}

bool isList(const EntryPlace& entry)
{
    return entry.format != nullptr &&
           (entry.format->kind == ValueKind::List || entry.format->kind == ValueKind::IndentedList);
}

QStringList valuesOf(const QString& text, const Piece& entry, const SectionFormat* format)
{
    if (!isList(entry.entry)) {
        return QStringList(valueOf(text, entry, format));
    }
    QStringList values;
    Line line = lineAt(text, entry.begin);
    if (entry.entry.format->kind == ValueKind::IndentedList) {
        values += text.mid(entry.entry.valueBegin, entry.entry.valueEnd - entry.entry.valueBegin);
    }
    while (line.next < entry.end) {
        line = lineAt(text, line.next);
        int begin = line.begin;
        int end = line.end;
        trim(text, begin, end);
        values += text.mid(begin, end - begin);
    }
    const bool isEmpty = values.size() == 1 && (values.first() == QLatin1String("<None>") ||
                                                values.first() == QLatin1String("<no address>"));
    return isEmpty ? QStringList() : values;
}

QString valueOf(const QString& text, const Piece& entry, const SectionFormat* format)
{
    if (isList(entry.entry)) {
        return valuesOf(text, entry, format).join(QLatin1Char('\n'));
    }
    const int begin = entry.entry.valueBegin;
    const int end = isVariable(format) ? withoutLineEnd(text, begin, entry.end) : entry.entry.valueEnd;
    return unquoted(text.mid(begin, end - begin), format);
}

int withoutLineEnd(const QString& text, int begin, int end)
{
    if (end > begin && text.at(end - 1) == QLatin1Char('\n')) {
        --end;
        if (end > begin && text.at(end - 1) == QLatin1Char('\r')) {
            --end;
        }
    }
    return end;
}

} // namespace norvex::SystemInfo::Internal
