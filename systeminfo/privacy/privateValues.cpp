#include "systeminfo/privacy/privateValues.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

namespace norvex::Privacy {

namespace {

/// "USB Serial Number" and "kUSBSerialNumberString" differ in spelling only.
QByteArray lettersAndDigits(const QByteArray& key)
{
    QByteArray letters;
    letters.reserve(key.size());
    for (const char c : key) {
        if (std::isalnum(static_cast<unsigned char>(c)) != 0) {
            letters += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        }
    }
    return letters;
}

enum class Part { Begin, End, Anywhere, Whole };

/// The first row that matches decides.
const struct
{
    std::string_view text; // lower-case letters and digits
    Part part;
    PrivateKind kind;
} rows[] = {
    {"iserialnumber", Part::Begin, PrivateKind::None}, // the number of a USB string
    {"index", Part::End, PrivateKind::None},
    {"content", Part::Begin, PrivateKind::Constant}, // of a partition: the kind of its file system
    {"fmntfromname", Part::Whole, PrivateKind::MountSource},
    {"fmntonname", Part::Whole, PrivateKind::MountPoint},
    {"iocalloutdevice", Part::Whole, PrivateKind::SerialPort},
    {"iodialindevice", Part::Whole, PrivateKind::SerialPort},
    {"iottydevice", Part::Whole, PrivateKind::SerialPort},
    {"iottybasename", Part::Whole, PrivateKind::SerialPort},
    {"serialnum", Part::Anywhere, PrivateKind::Serial},
    {"serialstring", Part::Anywhere, PrivateKind::Serial},
    {"serial", Part::End, PrivateKind::Serial},
    {"serialno", Part::End, PrivateKind::Serial},
    {"worldwidename", Part::Anywhere, PrivateKind::Serial},
    {"wwn", Part::End, PrivateKind::Serial},
    {"productkey", Part::End, PrivateKind::Serial},
    {"assettag", Part::End, PrivateKind::Serial},
    {"servicetag", Part::End, PrivateKind::Serial},
    {"imei", Part::End, PrivateKind::Serial},
    {"mlb", Part::End, PrivateKind::Serial}, // of the main logic board
    {"mac", Part::Whole, PrivateKind::Address},
    {"macaddress", Part::Anywhere, PrivateKind::Address},
    {"bssid", Part::Anywhere, PrivateKind::Address},
    {"bdaddr", Part::Anywhere, PrivateKind::Address},
    {"deviceaddress", Part::Anywhere, PrivateKind::Address},
    {"hwaddr", Part::Anywhere, PrivateKind::Address},
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
    {"ssid", Part::Begin, PrivateKind::Network},
    {"hostname", Part::Anywhere, PrivateKind::Host},
    {"computername", Part::Anywhere, PrivateKind::Host},
    {"domainname", Part::End, PrivateKind::Domain},
    {"ownername", Part::Anywhere, PrivateKind::Person},
    {"registeredowner", Part::End, PrivateKind::Person},
    {"registeredorganization", Part::End, PrivateKind::Person},
    {"userassigned", Part::Begin, PrivateKind::Name},
    {"username", Part::Anywhere, PrivateKind::Person},
    {"volumename", Part::Anywhere, PrivateKind::Label},
    {"volumelabel", Part::Anywhere, PrivateKind::Label},
    {"fullname", Part::Whole, PrivateKind::Label},
    {"edid", Part::End, PrivateKind::Display},
    {"token", Part::Anywhere, PrivateKind::Serial},
    {"password", Part::Anywhere, PrivateKind::Serial},
    {"passwd", Part::Anywhere, PrivateKind::Serial},
    {"passphrase", Part::Anywhere, PrivateKind::Serial},
    {"secret", Part::Anywhere, PrivateKind::Serial},
    {"apikey", Part::Anywhere, PrivateKind::Serial},
    {"currentnetwork", Part::Whole, PrivateKind::Serial},
    {"preferrednetworks", Part::Whole, PrivateKind::Serial},
    {"machinesignature", Part::Whole, PrivateKind::Serial},
    {"randomseed", Part::Whole, PrivateKind::Serial},
    {"uniquechipid", Part::Whole, PrivateKind::Serial},
    {"ecid", Part::End, PrivateKind::Serial},
    {"hw", Part::Begin, PrivateKind::Model}, // with the next, what sysctl answers about the hardware
    {"machdepcpu", Part::Begin, PrivateKind::Model},
    {"fstypename", Part::End, PrivateKind::Model},
    {"vendor", Part::End, PrivateKind::Model},
    {"vendorname", Part::End, PrivateKind::Model},
    {"vendorstring", Part::End, PrivateKind::Model},
    {"manufacturer", Part::End, PrivateKind::Model},
    {"model", Part::End, PrivateKind::Model},
    {"compatible", Part::Whole, PrivateKind::Model},
    {"devicetype", Part::Whole, PrivateKind::Model},
    {"bsdname", Part::Whole, PrivateKind::Model},
    {"ioname", Part::Whole, PrivateKind::Model},
    {"ionamematch", Part::Begin, PrivateKind::Model},
    {"ioclass", Part::Begin, PrivateKind::Model},
    {"ioproviderclass", Part::Whole, PrivateKind::Model},
    {"ioserialbsdclienttype", Part::Whole, PrivateKind::Model},
    {"cfbundle", Part::Begin, PrivateKind::Model},
    {"physicalinterconnect", Part::Begin, PrivateKind::Model},
    {"mediumtype", Part::Whole, PrivateKind::Model},
};

bool matches(std::string_view key, Part part, std::string_view text)
{
    switch (part) {
    case Part::Begin: return key.substr(0, text.size()) == text;
    case Part::End: return key.size() >= text.size() && key.substr(key.size() - text.size()) == text;
    case Part::Anywhere: return key.find(text) != std::string_view::npos;
    case Part::Whole: return key == text;
    }
    return false;
}

/// But for the zeros between texts.
bool isPrintable(const QString& text)
{
    return std::all_of(text.begin(), text.end(),
                       [](QChar c) { return c.isNull() || c.isPrint() || c == '\n'; });
}

} // namespace

PrivateKind privateKindOf(const QByteArray& key)
{
    const QByteArray letters = lettersAndDigits(key);
    for (const auto& row : rows) {
        if (matches({letters.constData(), static_cast<std::size_t>(letters.size())}, row.part, row.text)) {
            return row.kind;
        }
    }
    return key.contains("SSID") ? PrivateKind::Network : PrivateKind::None; // unlike "Class ID"
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

QString utf16TextOf(const QByteArray& data)
{
    const int units = data.size() / 2;
    const QString narrow = QString::fromUtf8(data.constData(), data.size());
    const bool isNarrow = !data.contains('\0') && narrow.toUtf8() == data && isPrintable(narrow);
    if (data.size() % 2 != 0 || isNarrow) {
        return QString();
    }
    for (const int high : {1, 0}) {
        std::array<int, 256> highBytes = {};
        QString text;
        for (int i = 0; i < units; ++i) {
            const auto highByte = static_cast<uchar>(data.at(2 * i + high));
            ++highBytes.at(highByte);
            text += QChar(static_cast<uchar>(data.at(2 * i + 1 - high)), highByte);
        }
        text.remove(QChar::ByteOrderMark);
        // Most letters of one text are of one script and share their high byte.
        const bool isOneScript = 2 * *std::max_element(highBytes.begin(), highBytes.end()) > units;
        if (isOneScript && text.indexOf(QChar::Null) != 0 && text.size() > 1 && isPrintable(text)) {
            return text;
        }
    }
    return QString();
}

QList<QByteArray> textsIn(const QByteArray& data)
{
    const QString wide = utf16TextOf(data);
    const QString text = wide.isEmpty() ? QString::fromUtf8(data.constData(), data.size()) : wide;
    const bool isText = !wide.isEmpty() || (text.toUtf8() == data && isPrintable(text));
    return isText ? text.toUtf8().split('\0') : QList<QByteArray>();
}

} // namespace norvex::Privacy
