#include "viewer/textLines.h"

#include <algorithm>

namespace norvex::Viewer {

namespace {

/// All characters below take one column, but for the tabulator.
const ushort firstUnusual = 0x300;

struct Range
{
    ushort first;
    ushort last;
};

/// Characters of two columns, by East Asian width, without those that a pair of code units stands for.
const Range wideRanges[] = {
    {0x1100, 0x115f}, {0x2e80, 0x303e}, {0x3041, 0xa4cf}, {0xac00, 0xd7a3},
    {0xf900, 0xfaff}, {0xfe30, 0xfe6f}, {0xff00, 0xff60}, {0xffe0, 0xffe6},
};

int unusualColumns(QChar character)
{
    // A character of two code units, mostly a symbol or an ideograph, is wide: one column each.
    if (character.isSurrogate()) {
        return 1;
    }
    if (character.isMark() || character.category() == QChar::Other_Format) {
        return 0;
    }
    const ushort code = character.unicode();
    const bool isWide = std::any_of(std::begin(wideRanges), std::end(wideRanges), [code](const Range& range) {
        return code >= range.first && code <= range.last;
    });
    return isWide ? 2 : 1;
}

/// The columns of a character that begins at a column.
inline int columnsOf(QChar character, int column)
{
    if (character.unicode() >= firstUnusual) {
        return unusualColumns(character);
    }
    return character.unicode() == '\t' ? TextLines::tabColumns - column % TextLines::tabColumns : 1;
}

/// The symbol of a character that does not print or that changes how its neighbours are shown.
QChar shown(QChar character)
{
    const ushort code = character.unicode();
    const ushort controlPictures = 0x2400;
    if (code < 0x20) {
        return code == '\t' ? character : QChar(ushort(controlPictures + code));
    }
    if (code == 0x7f) {
        return QChar(0x2421);
    }
    const bool isLineEnd = code == QChar::LineSeparator || code == QChar::ParagraphSeparator;
    const bool turnsText = (code >= 0x202a && code <= 0x202e) || (code >= 0x2066 && code <= 0x2069);
    return isLineEnd || turnsText || (code >= 0x80 && code < 0xa0) ? QChar(0xb7) : character;
}

} // namespace

TextLines::TextLines(const QString& text) : text_(text)
{
    const QChar* const characters = text.constData();
    checkpoints_.reserve(text.size() / checkpointDistance + 1);
    begins_.append(0);
    int column = 0;
    for (int i = 0; i < text.size(); ++i) {
        if (i % checkpointDistance == 0) {
            checkpoints_.append(column);
        }
        if (characters[i].unicode() == '\n') {
            mostColumns_ = std::max(mostColumns_, column);
            column = 0;
            begins_.append(i + 1);
            continue;
        }
        column += columnsOf(characters[i], column);
    }
    mostColumns_ = std::max(mostColumns_, column);
    if (begins_.last() != text.size() || begins_.size() == 1) {
        begins_.append(text.size());
    }
    begins_.squeeze();
}

int TextLines::end(int line) const
{
    const int begin = begins_.at(line);
    int end = begins_.at(line + 1);
    if (end > begin && text_.at(end - 1) == QLatin1Char('\n')) {
        --end;
        if (end > begin && text_.at(end - 1) == QLatin1Char('\r')) {
            --end;
        }
    }
    return end;
}

int TextLines::lineAt(int offset) const
{
    const auto behind = std::upper_bound(begins_.begin(), begins_.end() - 1, offset);
    return std::max(static_cast<int>(behind - begins_.begin()) - 1, 0);
}

int TextLines::columnAt(int offset) const
{
    int place = begins_.at(lineAt(offset));
    int column = 0;
    const int checkpoint = offset / checkpointDistance;
    if (checkpoint < checkpoints_.size() && checkpoint * checkpointDistance > place) {
        place = checkpoint * checkpointDistance;
        column = checkpoints_.at(checkpoint);
    }
    for (; place < offset; ++place) {
        column += columnsOf(text_.at(place), column);
    }
    return column;
}

int TextLines::offsetAt(int line, int column) const
{
    int place = begins_.at(line);
    int reached = 0;
    const int lineEnd = end(line);
    // The last checkpoint within the line that is not behind the column.
    const int first = place / checkpointDistance + 1;
    const int last = lineEnd / checkpointDistance;
    if (first <= last) {
        const auto begin = checkpoints_.begin() + first;
        const auto end = checkpoints_.begin() + std::min(last + 1, checkpoints_.size());
        const auto behind = std::upper_bound(begin, end, column);
        if (behind != begin) {
            place = static_cast<int>(behind - checkpoints_.begin() - 1) * checkpointDistance;
            reached = *(behind - 1);
        }
    }
    while (place < lineEnd) {
        const int next = reached + columnsOf(text_.at(place), reached);
        if (next > column) {
            break;
        }
        reached = next;
        ++place;
    }
    return place;
}

int cutAt(const QString& text, int offset, int end)
{
    // A text may consist of marks alone.
    const int last = std::min(offset + 64, end);
    while (offset > 0 && offset < last && (text.at(offset).isLowSurrogate() || text.at(offset).isMark())) {
        ++offset;
    }
    return std::min(offset, end);
}

QString shownText(const QString& text, int begin, int end)
{
    QString result = text.mid(begin, end - begin);
    for (QChar& character : result) {
        const ushort code = character.unicode();
        if (code < 0x20 || (code >= 0x7f && code < 0xa0) || (code >= 0x2028 && code <= 0x2069)) {
            character = shown(character);
        }
    }
    return result;
}

} // namespace norvex::Viewer
