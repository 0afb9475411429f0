#include "systeminfo/privacy/pseudonymMap.h"

#include "systeminfo/privacy/commonNames.h"
#include "systeminfo/privacy/spellings.h"

#include <algorithm>
#include <cctype>

namespace norvex::Privacy {

namespace {

using Where = Replacements::Where;
using Letters = Replacements::Letters;

constexpr int makerLength = 3; // of an address

int distinctBytes(const QByteArray& bytes)
{
    QByteArray sorted = bytes;
    std::sort(sorted.begin(), sorted.end());
    return static_cast<int>(std::unique(sorted.begin(), sorted.end()) - sorted.begin());
}

bool isEach(const QByteArray& bytes, char byte)
{
    return std::all_of(bytes.begin(), bytes.end(), [byte](char c) { return c == byte; });
}

/// "0000" is no serial number, and "****" hides one already.
bool hasContent(const QByteArray& utf8)
{
    return std::any_of(utf8.begin(), utf8.end(), [](char c) {
        return (c & 0x80) != 0 || (c != '0' && std::isalnum(static_cast<unsigned char>(c)) != 0);
    });
}

bool hasDigit(const QByteArray& text)
{
    return std::any_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool isHexNumber(const QByteArray& text)
{
    return std::all_of(text.begin(), text.end(), [](char c) {
        return std::isxdigit(static_cast<unsigned char>(c)) != 0 || c == ':' || c == '-';
    });
}

/// The blanks and zero bytes around a value fill up its field.
QByteArray trimmed(const QByteArray& bytes)
{
    const auto isBlank = [](char c) { return c == ' ' || c == '\0' || c == '\t' || c == '\n'; };
    int begin = 0;
    int end = bytes.size();
    while (begin < end && isBlank(bytes.at(begin))) {
        ++begin;
    }
    while (end > begin && isBlank(bytes.at(end - 1))) {
        --end;
    }
    return bytes.mid(begin, end - begin);
}

QByteArray reversed(QByteArray bytes)
{
    std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

enum class ByteOrder { LittleEndian, BigEndian };

QByteArray utf16(const QByteArray& utf8, ByteOrder order)
{
    QByteArray units;
    for (const QChar c : QString::fromUtf8(utf8)) {
        const bool isLittle = order == ByteOrder::LittleEndian;
        units += static_cast<char>(isLittle ? c.cell() : c.row());
        units += static_cast<char>(isLittle ? c.row() : c.cell());
    }
    return units;
}

/// How names are compared: "ZOË" is "Zoë", however its accent is stored.
QByteArray folded(const QByteArray& utf8)
{
    const QString text = QString::fromUtf8(utf8);
    return text.toUtf8() == utf8 ? text.normalized(QString::NormalizationForm_C).toLower().toUtf8() : utf8;
}

QString inLetters(const QString& text, int way)
{
    switch (way) {
    case 1: return text.toLower();
    case 2: return text.toUpper();
    default: return text;
    }
}

QByteArray hexPairs(const QByteArray& address, char separator)
{
    QByteArray text = address.toHex();
    for (int index = text.size() - 2; index > 0; index -= 2) {
        text.insert(index, separator);
    }
    return text;
}

/// "0:1c:b3:a:ff:7"
QByteArray withoutLeadingZeros(const QByteArray& address)
{
    QByteArray text;
    for (const char byte : address) {
        text += (text.isEmpty() ? "" : ":") + QByteArray::number(static_cast<unsigned char>(byte), 16);
    }
    return text;
}

QByteArray dashed(const QByteArray& uuid)
{
    const QByteArray hex = uuid.toHex();
    return hex.mid(0, 8) + '-' + hex.mid(8, 4) + '-' + hex.mid(12, 4) + '-' + hex.mid(16, 4) + '-' +
           hex.mid(20);
}

/// The firmware stores the first three numbers of a UUID with their low bytes first.
QByteArray littleEndian(const QByteArray& uuid)
{
    return reversed(uuid.mid(0, 4)) + reversed(uuid.mid(4, 2)) + reversed(uuid.mid(6, 2)) + uuid.mid(8);
}

/// What is unmistakable is replaced wherever it stands; the rest only as a word or a path component of its own.
bool isUnmistakable(const QByteArray& utf8)
{
    constexpr int shortest = 6;
    constexpr int longEnough = 8;
    const bool isNoWord = std::any_of(utf8.begin(), utf8.end(), [](char c) { return c >= ' ' && c < 'A'; });
    return distinctBytes(utf8) > 2 && utf8.size() >= (isNoWord ? shortest : longEnough);
}

} // namespace

void PseudonymMap::addForm(const QByteArray& text, const QByteArray& replacement, Where where,
                           Letters letters)
{
    texts_.add(text, replacement, where, letters);
    data_.add(text, replacement, where, letters);
    for (const ByteOrder order : {ByteOrder::LittleEndian, ByteOrder::BigEndian}) {
        data_.add(utf16(text, order), utf16(replacement, order), where, letters);
    }
}

void PseudonymMap::addSpelledForms(const QByteArray& text, const QByteArray& replacement, TextKind kind)
{
    const QString original = QString::fromUtf8(text);
    const QString invented = QString::fromUtf8(replacement);
    const bool isAscii = original.size() == text.size();
    for (int way = 0; way < (kind == TextKind::Name ? waysToSpellNames : waysToSpell); ++way) {
        for (int letters = 0; letters < (isAscii ? 1 : 3); ++letters) {
            for (const auto form : {QString::NormalizationForm_C, QString::NormalizationForm_D}) {
                const auto as = [&](const QString& name) {
                    return spelled(inLetters(name.normalized(form), letters), way).toUtf8();
                };
                addTextForm(as(original), as(invented), kind);
            }
        }
    }
}

void PseudonymMap::addTextForm(const QByteArray& text, const QByteArray& replacement, TextKind kind)
{
    const bool isSerial = kind == TextKind::Serial;
    const bool mayBeWord =
        isSerial ? text.size() > 3 && hasDigit(text) : kind == TextKind::Name && text.size() > 2;
    const bool isCertain = isUnmistakable(text);
    if (!isCertain && !mayBeWord && isSerial) {
        return;
    }
    const Where where = isCertain ? Where::Anywhere : (mayBeWord ? Where::Word : Where::Component);
    addForm(text, replacement, where, Letters::EachAsFound);
    if (isCertain) {
        keys_.add(text, replacement, isSerial ? Where::Anywhere : Where::Component, Letters::EachAsFound);
    } else if (mayBeWord && !isPropertyKey(QString::fromUtf8(text))) {
        keys_.add(text, replacement, Where::Component, Letters::EachAsFound);
    }
    if (isSerial) {
        numbers_.add(text, replacement, where, Letters::EachAsFound);
    } else if (mayBeWord && !isCertain && !text.endsWith('s')) {
        addForm(text + 's', replacement + 's', Where::Word, Letters::EachAsFound); // "Alices iPhone"
    }
}

/// Of addresses and UUIDs.
void PseudonymMap::addHexForm(const QByteArray& text, const QByteArray& replacement)
{
    for (Replacements* replacements : {&texts_, &data_, &keys_, &numbers_}) {
        replacements->add(text, replacement, Where::Anywhere, Letters::AllAsFound);
    }
}

void PseudonymMap::addBytes(const QByteArray& bytes, const QByteArray& replacement)
{
    data_.add(bytes, replacement, Where::Anywhere, Letters::Exact);
    data_.add(reversed(bytes), reversed(replacement), Where::Anywhere, Letters::Exact);
}

void PseudonymMap::addAddress(const QByteArray& address)
{
    if (isEach(address, '\0') || isEach(address, '\xff') || addresses_.contains(address)) {
        return;
    }
    // In an address of 8 bytes, these two say that the other 6 are an address of their own.
    const bool isExtended = address.mid(3, 2) == "\xff\xfe" || address.mid(3, 2) == "\xff\xff";
    const QByteArray device = address.mid(address.size() == 8 && isExtended ? 5 : makerLength);
    if (!addresses_.contains(device)) {
        addresses_.insert(device, generator_.device(device));
    }
    const QByteArray newDevice = addresses_.value(device);
    const QByteArray replacement = address.left(address.size() - device.size()) + newDevice;
    addresses_.insert(address, replacement);
    addAddressForms(address, replacement);
    if (device.size() == 3 && !isEach(device, '\0')) {
        addDerivedForms(device, newDevice);
    }
}

/// The forms in IPv6 addresses, and in the multicast groups in which neighbours ask for them.
void PseudonymMap::addDerivedForms(const QByteArray& device, const QByteArray& replacement)
{
    for (const char* prefix : {"\x33\x33\xff", "\xff\xfe"}) {
        data_.add(prefix + device, prefix + replacement, Where::Anywhere, Letters::Exact);
    }
    const auto suffix = [](const QByteArray& part) {
        const QByteArray hex = part.toHex();
        return "ff:fe" + hex.left(2) + ':' + QByteArray::number(hex.mid(2).toUInt(nullptr, 16), 16);
    };
    addHexForm(suffix(device), suffix(replacement));
    addHexForm("fffe" + device.toHex(), "fffe" + replacement.toHex());
    for (const char separator : {':', '-'}) {
        const QByteArray begin = QByteArray("ff") + separator + "fe" + separator;
        addHexForm(begin + hexPairs(device, separator), begin + hexPairs(replacement, separator));
    }
}

void PseudonymMap::addAddressForms(const QByteArray& address, const QByteArray& replacement)
{
    constexpr char locallyAdministered = 2; // the interfaces that a device adds to its own differ in this bit
    for (const char bit : {char(0), locallyAdministered}) {
        QByteArray original = address;
        QByteArray changed = replacement;
        original[0] = static_cast<char>(original.at(0) ^ bit);
        changed[0] = original.at(0);
        addBytes(original, changed);
        addHexForm(original.toHex(), changed.toHex());
        for (const char separator : {':', '-', '.', '_', ' '}) {
            addHexForm(hexPairs(original, separator), hexPairs(changed, separator));
        }
        for (Replacements* replacements : {&texts_, &data_, &keys_, &numbers_}) {
            replacements->add(withoutLeadingZeros(original), withoutLeadingZeros(changed), Where::Word,
                              Letters::AllAsFound);
        }
    }
}

void PseudonymMap::addUuid(const QByteArray& uuid)
{
    if (isEach(uuid, '\0') || isEach(uuid, '\xff') || whole_.contains(uuid)) {
        return;
    }
    const QByteArray replacement = generator_.uuid(uuid);
    whole_.insert(uuid, replacement);
    addBytes(uuid, replacement);
    addBytes(littleEndian(uuid), littleEndian(replacement));
    addForm(dashed(uuid), dashed(replacement).toUpper(), Where::Anywhere, Letters::AllAsFound);
    addHexForm(dashed(uuid), dashed(replacement).toUpper());
    addHexForm(uuid.toHex(), replacement.toHex());
}

void PseudonymMap::addText(const QByteArray& utf8, TextKind kind)
{
    const QByteArray text = trimmed(utf8);
    const bool isMadeOfOthers = kind == TextKind::Serial && isHexNumber(text) && keys_.replaced(text) != text;
    if (!hasContent(text) || whole_.contains(folded(text)) || isMadeOfOthers) {
        return;
    }
    const QByteArray replacement = generator_.text(text);
    whole_.insert(folded(text), replacement);
    constexpr int longestName = 255;
    if (text.size() <= longestName) {
        addSpelledForms(text, replacement, kind);
    } else {
        addTextForm(text, replacement, kind);
    }
}

void PseudonymMap::addFolder(const QByteArray& utf8)
{
    const QByteArray key = folded(trimmed(utf8));
    if (hasContent(key) && !whole_.contains(key)) {
        whole_.insert(key, generator_.text(trimmed(utf8)));
    }
}

void PseudonymMap::addSerialBytes(const QByteArray& bytes)
{
    constexpr int unmistakable = 6;
    if (isEach(bytes, '\0') || isEach(bytes, '\xff') || whole_.contains(bytes)) {
        return;
    }
    const QByteArray replacement = generator_.bytes(bytes);
    whole_.insert(bytes, replacement);
    if (bytes.size() >= unmistakable && distinctBytes(bytes) > 2) {
        addBytes(bytes, replacement);
        addHexForm(bytes.toHex(), replacement.toHex());
    }
}

QByteArray PseudonymMap::replacedWhole(const QByteArray& value) const
{
    const QByteArray text = trimmed(value);
    auto known = whole_.find(value);
    if (known != whole_.end()) {
        return *known;
    }
    known = whole_.find(folded(text));
    if (known == whole_.end() || text.isEmpty()) {
        return value;
    }
    QByteArray result = value;
    return result.replace(value.indexOf(text), text.size(), *known);
}

QByteArray PseudonymMap::inText(const QByteArray& utf8) const
{
    QByteArray result = texts_.replaced(utf8);
    const QString text = QString::fromUtf8(result);
    if (text.size() == result.size()) {
        return result; // ASCII
    }
    // Beyond ASCII a word can end, too: in "Alice’s iPhone" and "“Alice”".
    static const QByteArray mark("\xef\xbb\xbf"); // which does not reach a QString
    QByteArray separate = result.startsWith(mark) ? mark : QByteArray();
    int copied = 0;
    for (int i = 0; i <= text.size(); ++i) {
        const bool isEnd = i == text.size();
        const bool isPunctuation = !isEnd && text.at(i).unicode() >= 0x80 &&
                                   (text.at(i).isPunct() || text.at(i).isSpace() || text.at(i).isSymbol());
        if (isEnd || isPunctuation) {
            separate += texts_.replaced(text.mid(copied, i - copied).toUtf8());
            separate += isEnd ? QByteArray() : QString(text.at(i)).toUtf8();
            copied = i + 1;
        }
    }
    return separate;
}

QByteArray PseudonymMap::replacedAddress(const QByteArray& address) const
{
    return addresses_.value(address, address);
}

QByteArray PseudonymMap::inKey(const QByteArray& key) const
{
    return keys_.replaced(key);
}

} // namespace norvex::Privacy
