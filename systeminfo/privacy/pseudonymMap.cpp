#include "systeminfo/privacy/pseudonymMap.h"

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

// "0000" is no serial number, and "****" hides one already.
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

// The blanks and zero bytes around a value fill up its field.
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

QByteArray utf16(const QByteArray& utf8)
{
    QByteArray units;
    for (const QChar c : QString::fromUtf8(utf8)) {
        units += static_cast<char>(c.cell());
        units += static_cast<char>(c.row());
    }
    return units;
}

QByteArray hexPairs(const QByteArray& address, char separator)
{
    QByteArray text = address.toHex();
    for (int index = text.size() - 2; index > 0; index -= 2) {
        text.insert(index, separator);
    }
    return text;
}

// "0:1c:b3:a:ff:7"
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

// The firmware stores the first three numbers of a UUID with their low bytes first.
QByteArray littleEndian(const QByteArray& uuid)
{
    return reversed(uuid.mid(0, 4)) + reversed(uuid.mid(4, 2)) + reversed(uuid.mid(6, 2)) + uuid.mid(8);
}

// What is unmistakable is replaced wherever it stands; the rest only as a word or a path component of its own.
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
    data_.add(utf16(text), utf16(replacement), where, letters);
}

// Of addresses and UUIDs.
void PseudonymMap::addHexForm(const QByteArray& text, const QByteArray& replacement)
{
    for (Replacements* replacements : {&texts_, &data_, &keys_}) {
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
        addresses_.insert(device, generator_.bytes(device));
    }
    const QByteArray newDevice = addresses_.value(device);
    const QByteArray replacement = address.left(address.size() - device.size()) + newDevice;
    addresses_.insert(address, replacement);
    addAddressForms(address, replacement);
    if (device.size() == 3) {
        addDerivedForms(device, newDevice);
    }
}

// The forms in IPv6 addresses, and in the multicast groups in which neighbours ask for them.
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
        for (Replacements* replacements : {&texts_, &data_, &keys_}) {
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
    const bool isSerial = kind == TextKind::Serial;
    const bool isMadeOfOthers = isSerial && isHexNumber(text) && keys_.replaced(text) != text;
    if (!hasContent(text) || whole_.contains(text.toLower()) || isMadeOfOthers) {
        return;
    }
    const QByteArray replacement = generator_.text(text);
    whole_.insert(text.toLower(), replacement);
    const bool mayBeWord =
        isSerial ? text.size() > 3 && hasDigit(text) : kind == TextKind::Name && text.size() > 2;
    if (isUnmistakable(text)) {
        addForm(text, replacement, Where::Anywhere, Letters::EachAsFound);
        keys_.add(text, replacement, isSerial ? Where::Anywhere : Where::Component, Letters::EachAsFound);
    } else if (mayBeWord) {
        addForm(text, replacement, Where::Word, Letters::EachAsFound);
    } else if (!isSerial) {
        addForm(text, replacement, Where::Component, Letters::EachAsFound);
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
    known = whole_.find(text.toLower());
    if (known == whole_.end() || text.isEmpty()) {
        return value;
    }
    QByteArray result = value;
    return result.replace(value.indexOf(text), text.size(), *known);
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
