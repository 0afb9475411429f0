#include "systeminfo/privacy/privateValues.h"

#include <algorithm>
#include <cctype>

namespace norvex::Privacy {

namespace {

// "USB Serial Number" and "kUSBSerialNumberString" differ in spelling only.
QByteArray lettersAndDigits(const QByteArray& key)
{
    QByteArray letters;
    for (const char c : key) {
        if (std::isalnum(static_cast<unsigned char>(c)) != 0) {
            letters += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        }
    }
    return letters;
}

enum class Part { Begin, End, Anywhere, Whole };

// The first row that matches decides.
const struct
{
    const char* text; // lower-case letters and digits
    Part part;
    PrivateKind kind;
} rows[] = {
    {"iserialnumber", Part::Begin, PrivateKind::None}, // the number of a USB string
    {"index", Part::End, PrivateKind::None},
    {"content", Part::Begin, PrivateKind::Constant}, // of a partition: the kind of its file system
    {"serialnum", Part::Anywhere, PrivateKind::Serial},
    {"serialstring", Part::Anywhere, PrivateKind::Serial},
    {"serial", Part::End, PrivateKind::Serial},
    {"serialno", Part::End, PrivateKind::Serial},
    {"worldwidename", Part::Anywhere, PrivateKind::Serial},
    {"wwn", Part::End, PrivateKind::Serial},
    {"mlb", Part::End, PrivateKind::Serial}, // of the main logic board
    {"macaddress", Part::Anywhere, PrivateKind::Address},
    {"bssid", Part::Anywhere, PrivateKind::Address},
    {"bdaddr", Part::Anywhere, PrivateKind::Address},
    {"deviceaddress", Part::Anywhere, PrivateKind::Address},
    {"hardwareaddress", Part::Anywhere, PrivateKind::Address},
    {"bluetoothaddress", Part::Anywhere, PrivateKind::Address},
    {"ethernetaddress", Part::Anywhere, PrivateKind::Address},
    {"permanentaddress", Part::Anywhere, PrivateKind::Address},
    {"eui64", Part::Anywhere, PrivateKind::Address},
    {"guid", Part::End, PrivateKind::Address}, // of FireWire; data of 16 bytes is a UUID
    {"rom", Part::Whole, PrivateKind::Address},
    {"8b38c14rom", Part::End, PrivateKind::Address}, // the same in the firmware's variables
    {"uuid", Part::Anywhere, PrivateKind::Uuid},
    {"systemid", Part::Whole, PrivateKind::Uuid},
    {"ssid", Part::Begin, PrivateKind::Name},
    {"hostname", Part::Anywhere, PrivateKind::Name},
    {"computername", Part::Anywhere, PrivateKind::Name},
    {"username", Part::Anywhere, PrivateKind::Name},
    {"volumename", Part::Anywhere, PrivateKind::Label},
    {"fullname", Part::Whole, PrivateKind::Label},
    {"edid", Part::End, PrivateKind::Display},
    {"token", Part::Anywhere, PrivateKind::Serial},
    {"password", Part::Anywhere, PrivateKind::Serial},
    {"currentnetwork", Part::Whole, PrivateKind::Serial},
    {"preferrednetworks", Part::Whole, PrivateKind::Serial},
    {"machinesignature", Part::Whole, PrivateKind::Serial},
    {"randomseed", Part::Whole, PrivateKind::Serial},
    {"uniquechipid", Part::Whole, PrivateKind::Serial},
    {"ecid", Part::End, PrivateKind::Serial},
};

bool matches(const QByteArray& key, Part part, const char* text)
{
    switch (part) {
    case Part::Begin: return key.startsWith(text);
    case Part::End: return key.endsWith(text);
    case Part::Anywhere: return key.contains(text);
    case Part::Whole: return key == text;
    }
    return false;
}

constexpr int displayDataSize = 128; // its extensions hold no serial number

} // namespace

PrivateKind privateKindOf(const QByteArray& key)
{
    const QByteArray letters = lettersAndDigits(key);
    for (const auto& row : rows) {
        if (matches(letters, row.part, row.text)) {
            return row.kind;
        }
    }
    return key.contains("SSID") ? PrivateKind::Name : PrivateKind::None; // unlike "Class ID"
}

bool isCommonLabel(const QByteArray& label)
{
    static const char* const common[] = {
        "macintoshhd", "macintoshhddata", "macintoshssd", "data",    "efi",  "efisystempartition",
        "preboot",     "recovery",        "recoveryhd",   "vm",      "boot", "update",
        "customer",    "bootcamp",        "untitled",     "noname",  "root", "basicdatapartition",
        "diskimage",   "booter",          "apple",        "bootosx", "home", "microsoftreservedpartition",
        "isopartition"};
    QByteArray letters = lettersAndDigits(label);
    while (!letters.isEmpty() &&
           std::isdigit(static_cast<unsigned char>(letters.at(letters.size() - 1))) != 0) {
        letters.chop(1);
    }
    for (const char* name : common) {
        if (letters == name) {
            return true;
        }
    }
    return label.endsWith(" Media"); // a whole disk, named after its model
}

bool isSerialNumber(std::uint64_t number)
{
    return number > 0xffff;
}

QByteArray addressOf(std::uint64_t number)
{
    if (number >> 32 == 0) {
        return QByteArray();
    }
    const QByteArray bytes = QByteArray::fromHex(
        QByteArray::number(qulonglong(number), 16).rightJustified(2 * extendedAddressSize, '0'));
    return number >> 48 == 0 ? bytes.right(addressSize) : bytes;
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
    for (int start = addressSize; isList && start < data.size(); start += addressSize) {
        addresses += data.mid(start, addressSize);
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
    for (int start = firstDescriptor; start + descriptorSize < displayDataSize; start += descriptorSize) {
        const QByteArray descriptor = data.mid(start, descriptorSize);
        if (data.size() >= displayDataSize && descriptor.startsWith(QByteArray("\0\0\0\xff", 4))) {
            serials += descriptor.mid(headSize);
        }
    }
    return serials;
}

void cleanDisplayData(QByteArray& data)
{
    constexpr int serialOffset = 12;
    constexpr int serialSize = 4;
    if (data.size() < displayDataSize) {
        return;
    }
    data.replace(serialOffset, serialSize, QByteArray(serialSize, '\0'));
    unsigned sum = 0;
    for (int i = 0; i < displayDataSize - 1; ++i) {
        sum += static_cast<unsigned char>(data.at(i));
    }
    data[displayDataSize - 1] = static_cast<char>(0x100 - sum % 0x100); // all bytes add up to 0
}

} // namespace norvex::Privacy
