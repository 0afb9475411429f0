#include "systeminfo/reportParts.h"

namespace norvex::SystemInfo::Internal {

namespace {

/// The value of the block's first entry of that label; empty without one.
QString valueInBlock(const QString& text, const Piece& block, const SectionFormat& format, const char* label)
{
    PieceReader reader(text, contentOf(block, format));
    for (Piece piece; reader.next(piece);) {
        if (piece.type == Piece::Entry &&
            piece.entry.labelEnd - piece.entry.labelBegin == int(qstrlen(label)) &&
            hasAt(text, piece.entry.labelBegin, piece.entry.labelEnd, label)) {
            return valueOf(text, piece, &format);
        }
    }
    return QString();
}

/// "0xVENDOR:0xPRODUCT@0xLOCATION"; empty unless the block has all three.
QString usbName(const QString& text, const Piece& block, const SectionFormat& format)
{
    const auto number = [&](const char* label) {
        return valueInBlock(text, block, format, label).section(QLatin1Char(' '), 0, 0);
    };
    const QString vendor = number("Vendor ID");
    const QString product = number("Product ID");
    const QString location = number("Location ID");
    const bool isComplete = !vendor.isEmpty() && !product.isEmpty() && !location.isEmpty();
    return isComplete ? vendor + QLatin1Char(':') + product + QLatin1Char('@') + location : QString();
}

/// The line of the block that is its name.
QString nameLine(const QString& text, const Piece& block, int index)
{
    Line line = lineAt(text, block.begin);
    for (; index > 0 && line.next < block.end; --index) {
        line = lineAt(text, line.next);
    }
    return index == 0 ? text.mid(line.begin, line.end - line.begin) : QString();
}

QString givenName(const QString& text, const Piece& block, const SectionFormat& format)
{
    if (format.blocks->nameLine != -1) {
        return nameLine(text, block, format.blocks->nameLine);
    }
    if (isSection(&format, usbSection)) {
        return usbName(text, block, format);
    }
    for (const char* label : format.blockNames) {
        QString name = valueInBlock(text, block, format, label);
        if (!name.isEmpty() && name != QLatin1String("???")) { // what a graphics card without a name shows
            return name;
        }
    }
    return QString();
}

} // namespace

QString sectionName(const QString& text, const Part& part, int end)
{
    if (const SectionFormat* format = part.format()) {
        return QString::fromLatin1(format->name);
    }
    const Line heading = headingOf(text, part, end);
    if (heading.next == part.begin) {
        PieceReader reader(text, contentOf(text, part, end));
        Piece first;
        return reader.next(first) && first.type == Piece::Entry ? labelOf(text, first.entry) : QString();
    }
    const QString name = text.mid(heading.begin, heading.end - heading.begin).trimmed();
    return name.endsWith(QLatin1Char(':')) ? name.left(name.size() - 1) : name;
}

QString blockName(const QString& text, const Piece& block, const SectionFormat& format)
{
    const QString name = givenName(text, block, format);
    return name.isEmpty() ? QString::number(block.number) : name;
}

} // namespace norvex::SystemInfo::Internal
