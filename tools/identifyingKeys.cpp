#include "tools/identifyingKeys.h"

#include <cctype>

namespace norvex::Tool {

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

// The first row that fits decides.
const struct
{
    Part part;
    const char* text; // lower-case letters and digits
    Identity identity;
} rows[] = {
    {Part::Begin, "iserialnumber", Identity::None}, // the number of a USB string
    {Part::End, "index", Identity::None},
    {Part::Begin, "content", Identity::Constant}, // of a partition: the kind of its file system
    {Part::Anywhere, "serialnum", Identity::Serial},
    {Part::Anywhere, "serialstring", Identity::Serial},
    {Part::End, "serial", Identity::Serial},
    {Part::End, "serialno", Identity::Serial},
    {Part::Anywhere, "worldwidename", Identity::Serial},
    {Part::End, "wwn", Identity::Serial},
    {Part::End, "mlb", Identity::Serial}, // of the main logic board
    {Part::Anywhere, "macaddress", Identity::Address},
    {Part::Anywhere, "bssid", Identity::Address},
    {Part::Anywhere, "bdaddr", Identity::Address},
    {Part::Anywhere, "deviceaddress", Identity::Address},
    {Part::Anywhere, "hardwareaddress", Identity::Address},
    {Part::Anywhere, "bluetoothaddress", Identity::Address},
    {Part::Anywhere, "ethernetaddress", Identity::Address},
    {Part::Anywhere, "permanentaddress", Identity::Address},
    {Part::Anywhere, "eui64", Identity::Address},
    {Part::End, "guid", Identity::Address}, // of FireWire; data of 16 bytes is a UUID
    {Part::Whole, "rom", Identity::Address},
    {Part::End, "8b38c14rom", Identity::Address}, // the same in the firmware's variables
    {Part::Anywhere, "uuid", Identity::Uuid},
    {Part::Whole, "systemid", Identity::Uuid},
    {Part::Begin, "ssid", Identity::Name},
    {Part::Anywhere, "hostname", Identity::Name},
    {Part::Anywhere, "computername", Identity::Name},
    {Part::Anywhere, "username", Identity::Name},
    {Part::Anywhere, "volumename", Identity::Label},
    {Part::Whole, "fullname", Identity::Label},
    {Part::End, "edid", Identity::Display},
    {Part::Anywhere, "token", Identity::Serial},
    {Part::Anywhere, "password", Identity::Serial},
    {Part::Whole, "currentnetwork", Identity::Serial},
    {Part::Whole, "preferrednetworks", Identity::Serial},
    {Part::Whole, "machinesignature", Identity::Serial},
    {Part::Whole, "randomseed", Identity::Serial},
    {Part::Whole, "uniquechipid", Identity::Serial},
    {Part::End, "ecid", Identity::Serial},
};

bool fits(const QByteArray& key, Part part, const char* text)
{
    switch (part) {
    case Part::Begin: return key.startsWith(text);
    case Part::End: return key.endsWith(text);
    case Part::Anywhere: return key.contains(text);
    case Part::Whole: return key == text;
    }
    return false;
}

} // namespace

Identity identityOf(const QByteArray& key)
{
    const QByteArray letters = lettersAndDigits(key);
    for (const auto& row : rows) {
        if (fits(letters, row.part, row.text)) {
            return row.identity;
        }
    }
    return key.contains("SSID") ? Identity::Name : Identity::None; // unlike "Class ID"
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
    return label.endsWith(" Media"); // a whole disk, called by its model
}

} // namespace norvex::Tool
