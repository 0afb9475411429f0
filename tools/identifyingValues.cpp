#include "tools/identifyingValues.h"

#include <algorithm>
#include <cctype>

namespace norvex::Tool {

namespace {

constexpr int displayDataSize = 128; // its extensions hold no serial number

std::uint64_t bitsOf(const RecordedValue& integer)
{
    const int unused = 64 - integer.size;
    return static_cast<std::uint64_t>(integer.number) << unused >> unused;
}

} // namespace

bool isSerialNumber(const RecordedValue& integer)
{
    return bitsOf(integer) > 0xffff;
}

QByteArray decimal(const RecordedValue& integer)
{
    return QByteArray::number(qulonglong(bitsOf(integer)));
}

QByteArray addressOf(const RecordedValue& integer)
{
    const std::uint64_t bits = bitsOf(integer);
    if (bits >> 32 == 0) {
        return QByteArray();
    }
    const QByteArray bytes = QByteArray::fromHex(
        QByteArray::number(qulonglong(bits), 16).rightJustified(2 * extendedAddressSize, '0'));
    return bits >> 48 == 0 ? bytes.right(addressSize) : bytes;
}

QByteArray hexBytesOf(const QByteArray& text)
{
    QByteArray digits;
    for (const char c : text.trimmed()) {
        const bool isSeparator = c == ':' || c == '-' || c == '.';
        if (!isSeparator && !std::isxdigit(static_cast<unsigned char>(c))) {
            return QByteArray();
        }
        digits += isSeparator ? "" : QByteArray(1, c);
    }
    return digits.size() % 2 == 0 ? QByteArray::fromHex(digits) : QByteArray();
}

QList<QByteArray> addressesIn(const QByteArray& data)
{
    const bool isExtended = data.size() == extendedAddressSize && !data.endsWith(QByteArray(2, '\0'));
    const bool isList = data.size() % addressSize == 0;
    QList<QByteArray> addresses = {data.left(isExtended ? extendedAddressSize : addressSize)};
    for (int place = addressSize; isList && place < data.size(); place += addressSize) {
        addresses += data.mid(place, addressSize);
    }
    return addresses;
}

QList<QByteArray> textsIn(const QByteArray& data)
{
    const bool isText =
        std::all_of(data.begin(), data.end(), [](char c) { return c == 0 || (c >= ' ' && c < 0x7f); });
    return isText ? data.split('\0') : QList<QByteArray>();
}

QList<QByteArray> displaySerials(const QByteArray& data)
{
    constexpr int firstDescriptor = 54;
    constexpr int descriptorSize = 18;
    constexpr int headSize = 5;
    QList<QByteArray> serials;
    for (int place = firstDescriptor; place + descriptorSize < displayDataSize; place += descriptorSize) {
        const QByteArray descriptor = data.mid(place, descriptorSize);
        if (data.size() >= displayDataSize && descriptor.startsWith(QByteArray("\0\0\0\xff", 4))) {
            serials += descriptor.mid(headSize);
        }
    }
    return serials;
}

void cleanDisplayData(QByteArray& data)
{
    constexpr int serialPlace = 12;
    constexpr int serialSize = 4;
    if (data.size() < displayDataSize) {
        return;
    }
    data.replace(serialPlace, serialSize, QByteArray(serialSize, '\0'));
    unsigned sum = 0;
    for (int i = 0; i < displayDataSize - 1; ++i) {
        sum += static_cast<unsigned char>(data.at(i));
    }
    data[displayDataSize - 1] = static_cast<char>(0x100 - sum % 0x100); // all bytes add up to 0
}

} // namespace norvex::Tool
