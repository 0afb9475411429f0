#include "systeminfo/privacy/pseudonymGenerator.h"

#include <QString>

#include <algorithm>

namespace norvex::Privacy {

namespace {

bool isDigit(ushort unit)
{
    return unit >= '0' && unit <= '9';
}

bool isHexLetter(ushort unit)
{
    return (unit >= 'a' && unit <= 'f') || (unit >= 'A' && unit <= 'F');
}

/// All digits and letters are hexadecimal, and there are both.
bool isHexadecimal(const QString& text)
{
    bool hasDigits = false;
    for (const QChar c : text) {
        if (c.isLetter() && !isHexLetter(c.unicode())) {
            return false;
        }
        hasDigits = hasDigits || isDigit(c.unicode());
    }
    return hasDigits;
}

} // namespace

/// A character that takes as many bytes.
ushort PseudonymGenerator::characterLike(ushort original, bool isHex)
{
    const unsigned letters = isHex ? 6 : 26;
    if (isDigit(original)) {
        return static_cast<ushort>('0' + number(10));
    }
    if (original >= 'a' && original <= 'z') {
        return static_cast<ushort>('a' + number(letters));
    }
    if (original >= 'A' && original <= 'Z') {
        return static_cast<ushort>('A' + number(letters));
    }
    if (QChar::isLowSurrogate(original)) {
        return static_cast<ushort>(0xdc00 + number(0x100));
    }
    if (original < 0x80 || !QChar::isLetterOrNumber(original)) {
        return original;
    }
    return static_cast<ushort>(original < 0x800 ? 0x430 + number(32) : 0x4e00 + number(0x1000));
}

template <typename Invent>
QByteArray PseudonymGenerator::untaken(const QByteArray& original, Invent invent)
{
    reserve(original);
    QByteArray invented = invent();
    // A very short one can have no other of its shape.
    for (int tries = 0; tries < 1000 && taken_.contains(invented.toLower()); ++tries) {
        invented = invent();
    }
    reserve(invented);
    return invented;
}

QByteArray PseudonymGenerator::text(const QByteArray& utf8)
{
    const QString original = QString::fromUtf8(utf8);
    const bool isHex = isHexadecimal(original);
    // A number keeps its length, and does not outgrow the integer that holds it.
    const bool isNumber =
        std::all_of(original.begin(), original.end(), [](QChar c) { return isDigit(c.unicode()); });
    return untaken(utf8, [&] {
        QString text = original;
        for (QChar& c : text) {
            c = QChar(characterLike(c.unicode(), isHex));
        }
        if (isNumber && !text.isEmpty()) {
            text[0] = QLatin1Char(original.at(0) == QLatin1Char('0') ? '0' : '1');
        }
        return text.toUtf8();
    });
}

QByteArray PseudonymGenerator::bytes(const QByteArray& original)
{
    const auto isUsed = [](char c) { return c != 0; };
    const auto first = std::find_if(original.begin(), original.end(), isUsed) - original.begin();
    const auto end = std::find_if(original.rbegin(), original.rend(), isUsed).base() - original.begin();
    return untaken(original, [&] {
        QByteArray invented = original;
        for (auto i = first; i < end; ++i) {
            invented[static_cast<int>(i)] = static_cast<char>(1 + number(255));
        }
        return invented;
    });
}

QByteArray PseudonymGenerator::device(const QByteArray& original)
{
    return untaken(original, [&] {
        QByteArray invented = original;
        for (char& byte : invented) {
            byte = static_cast<char>(1 + number(255));
        }
        return invented;
    });
}

QByteArray PseudonymGenerator::uuid(const QByteArray& original)
{
    constexpr int versionByte = 6;
    constexpr int variantByte = 8;
    return untaken(original, [&] {
        QByteArray invented = original;
        for (char& byte : invented) {
            byte = static_cast<char>(number(256));
        }
        invented[versionByte] = static_cast<char>((original.at(versionByte) & 0xf0) | number(16));
        invented[variantByte] = static_cast<char>((original.at(variantByte) & 0xc0) | number(64));
        return invented;
    });
}

} // namespace norvex::Privacy
