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
    const char* text; // lower-case letters and digits
    Part part;
    Identity identity;
} rows[] = {
    {"iserialnumber", Part::Begin, Identity::None}, // the number of a USB string
    {"index", Part::End, Identity::None},
    {"content", Part::Begin, Identity::Constant}, // of a partition: the kind of its file system
    {"serialnum", Part::Anywhere, Identity::Serial},
    {"serialstring", Part::Anywhere, Identity::Serial},
    {"serial", Part::End, Identity::Serial},
    {"serialno", Part::End, Identity::Serial},
    {"worldwidename", Part::Anywhere, Identity::Serial},
    {"wwn", Part::End, Identity::Serial},
    {"mlb", Part::End, Identity::Serial}, // of the main logic board
    {"macaddress", Part::Anywhere, Identity::Address},
    {"bssid", Part::Anywhere, Identity::Address},
    {"bdaddr", Part::Anywhere, Identity::Address},
    {"deviceaddress", Part::Anywhere, Identity::Address},
    {"hardwareaddress", Part::Anywhere, Identity::Address},
    {"bluetoothaddress", Part::Anywhere, Identity::Address},
    {"ethernetaddress", Part::Anywhere, Identity::Address},
    {"permanentaddress", Part::Anywhere, Identity::Address},
    {"eui64", Part::Anywhere, Identity::Address},
    {"guid", Part::End, Identity::Address}, // of FireWire; data of 16 bytes is a UUID
    {"rom", Part::Whole, Identity::Address},
    {"8b38c14rom", Part::End, Identity::Address}, // the same in the firmware's variables
    {"uuid", Part::Anywhere, Identity::Uuid},
    {"systemid", Part::Whole, Identity::Uuid},
    {"ssid", Part::Begin, Identity::Name},
    {"hostname", Part::Anywhere, Identity::Name},
    {"computername", Part::Anywhere, Identity::Name},
    {"username", Part::Anywhere, Identity::Name},
    {"volumename", Part::Anywhere, Identity::Label},
    {"fullname", Part::Whole, Identity::Label},
    {"edid", Part::End, Identity::Display},
    {"token", Part::Anywhere, Identity::Serial},
    {"password", Part::Anywhere, Identity::Serial},
    {"currentnetwork", Part::Whole, Identity::Serial},
    {"preferrednetworks", Part::Whole, Identity::Serial},
    {"machinesignature", Part::Whole, Identity::Serial},
    {"randomseed", Part::Whole, Identity::Serial},
    {"uniquechipid", Part::Whole, Identity::Serial},
    {"ecid", Part::End, Identity::Serial},
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
