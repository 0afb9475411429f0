#pragma once

/// @file
/// What a reader of reports knows about their format: one table of sections, one of blocks.

#include <QString>

#include <cstddef>
#include <cstring>
#include <vector>

namespace norvex::SystemInfo::Internal {

/// The halves of a report, each below its banner.
enum class Half : quint8 { None, Macintosh, Windows, Qt };

/// The half as JSON names it; an empty text for none.
const char* halfName(Half half);

/// A line of a text: where it begins, where its line end does ("\n", "\r\n", or nothing at the text's end), and
/// where the next line begins.
struct Line
{
    int begin;
    int end;
    int next;

    bool isEmpty() const { return begin == end; }
};

/// The first line feed from a position on; -1 without one. The C library searches for its byte several times faster than
/// Qt for the character, and hardly any other character has that byte.
inline int lineFeedFrom(const QString& text, int begin)
{
    const QChar* const first = text.constData() + begin;
    const std::size_t bytes = static_cast<std::size_t>(text.size() - begin) * sizeof(QChar);
    const auto* const found = static_cast<const char*>(std::memchr(first, '\n', bytes));
    if (found == nullptr) {
        return -1;
    }
    const int position = begin + static_cast<int>((found - reinterpret_cast<const char*>(first)) / 2);
    const bool isLineFeed = text.at(position) == QLatin1Char('\n');
    return isLineFeed ? position : text.indexOf(QLatin1Char('\n'), position + 1);
}

/// The line that begins at a position before the text's end. It is inline because it is all that most lines take: a call
/// would double the time.
inline Line lineAt(const QString& text, int begin)
{
    const int lineFeed = lineFeedFrom(text, begin);
    if (lineFeed == -1) {
        return {begin, text.size(), text.size()};
    }
    const bool hasReturn = lineFeed > begin && text.at(lineFeed - 1) == QLatin1Char('\r');
    return {begin, hasReturn ? lineFeed - 1 : lineFeed, lineFeed + 1};
}

bool isSeparator(const QString& text, const Line& line);
/// The half that the line is the banner of.
Half bannerHalf(const QString& text, const Line& line);
/// The last separator of those that are whole between two positions, the first of which begins a line; begin is -1
/// without one.
Line lastSeparator(const QString& text, int begin, int end);

/// What stands behind a label.
enum class ValueKind : quint8 {
    Text,
    MemorySize,
    DiskSize,
    ClockSpeed,
    Frequency, ///< a real number of Hz
    Lengths,   ///< real numbers of mm and inches
    BitRate,
    IndentedList, ///< the first value behind the label, each further one on a line that blanks fill up to its column
    List          ///< a value a line, below the label up to an empty line
};

/// What stands between a label and its value.
enum class Delimiter : quint8 { Colon, Blanks, Equals };

/// An entry that is more than a label, a colon and a text.
struct EntryFormat
{
    const char* label;
    ValueKind kind = ValueKind::Text;
    Delimiter delimiter = Delimiter::Colon;
    bool isVolatile = false;
};

/// What distinguishes the blocks of a section.
struct BlockFormat
{
    const char*
        opening;     ///< the first line begins with it; null: every line opens a block that is not inside one
    bool isNumbered; ///< behind the opening stand digits alone
    const char* closing; ///< the last line; null: a block ends where the next one opens
    int ownLines;        ///< so many lines at its begin are no entries
    int nameLine;        ///< which of them is the name, counted from 0; -1: an entry is
};

/// A constant table and its length.
template <typename Row>
struct Table
{
    const Row* first = nullptr;
    std::size_t count = 0;

    constexpr Table() = default;
    template <std::size_t size>
    constexpr Table(const Row (&rows)[size]) : first(rows), count(size)
    {}

    const Row* begin() const { return first; }
    const Row* end() const { return first + count; }
};

/// A section. One without a heading begins with any of its entries, so it has them all here.
struct SectionFormat
{
    const char* name;
    const char* heading;
    Table<EntryFormat> entries;
    const BlockFormat* blocks = nullptr;
    Table<const char*> blockNames = {}; ///< the labels of what names a block
    bool isQuoted = false;              ///< texts stand between apostrophes

    Half half = Half::None; ///< these two are as sections() has them
    int group = 0;
};

/// All sections in the report's order.
const std::vector<SectionFormat>& sectionFormats();

extern const char* const environmentSection;
extern const char* const openGLSection;
extern const char* const usbSection;

/// Whether the section is the one of this name; false for none.
bool isSection(const SectionFormat* format, const char* name);

/// The environment's section.
const SectionFormat* environmentFormat();

/// The section that this line is the heading of, or, of a section without one, an entry; null when there is none. The
/// Windows half has none of the Macintosh sections.
const SectionFormat* sectionOf(const QString& text, const Line& line, Half half);

/// Whether the line opens a block of the kind, when it is not inside one.
bool opensBlock(const QString& text, const Line& line, const BlockFormat& blocks);
bool closesBlock(const QString& text, const Line& line, const BlockFormat& blocks);

/// Where the "=" of "  NAME=VALUE" stands; -1 when the line begins no variable. A name has letters, digits and a few
/// other characters, so that most lines of a value that has several are none.
int variableDelimiter(const QString& text, const Line& line);

/// Whether the text has this, in ASCII, at a position, and all of it before the end.
bool hasAt(const QString& text, int position, int end, const char* ascii);
/// Whether there are only blanks between two positions.
bool isBlank(const QString& text, int begin, int end);

} // namespace norvex::SystemInfo::Internal
