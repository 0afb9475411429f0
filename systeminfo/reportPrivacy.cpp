#include "systeminfo/reportPrivacy.h"

#include "systeminfo/privacy/environmentVariables.h"

#include <cstring>
#include <string_view>

namespace norvex::SystemInfo::Internal {

namespace {

using Kind = Privacy::PrivateKind;

const char blockLine[] = "\n"; ///< instead of a label: a block's own lines, among them its name
const char portSection[] = "ioKitGetRs232SerialDevices";
const char others[] = ""; ///< instead of a label: every other label, value and line

/// Where private values stand. A section that is not here is a text in which anything may stand: what its shape gives
/// away and known values are replaced. Model says that no name can stand there, so that a user called "intel" changes
/// nothing.
const struct
{
    const char* section;
    const char* label;
    Kind kind;
} rows[] = {
    {"osVersion", others, Kind::Model},
    {"kernelInfo", others, Kind::Model},
    {"macModel", others, Kind::Model},
    {"architecture", others, Kind::Model},
    {"cpuInfo", others, Kind::Model},
    {"memoryInfo", others, Kind::Model},
    {"ioKitSataDiskDevices", others, Kind::Model},
    {"ioKitSataDiskDevices", "Serial Number", Kind::Serial},
    {"ioKitSerialAtapiDevices", others, Kind::Model},
    {"ioKitSerialAtapiDevices", "Serial Number", Kind::Serial},
    {"ioKitNVMExpressDevices", others, Kind::Model},
    {"ioKitNVMExpressDevices", "Serial Number", Kind::Serial},
    {"listFileSystemVolumesInfo", others, Kind::Model},
    {"listFileSystemVolumesInfo", blockLine, Kind::MountPoint},
    {"listFileSystemVolumesInfo", "Mount to", Kind::MountPoint},
    {"listFileSystemVolumesInfo", "Mount from", Kind::MountSource},
    {"ioKitEthernetDevices", others, Kind::Model},
    {"ioKitEthernetDevices", "802.11 SSID", Kind::Network},
    {"ioKitEthernetDevices", "802.11 BSSID", Kind::Address},
    {"ioKitEthernetDevices", "Product name", Kind::Product},
    {"ioKitEthernetDevices", "MAC address", Kind::Address},
    {"ioKitPlatformInfos", others, Kind::Model},
    {"ioKitPlatformInfos", "Serial number", Kind::Serial},
    {"ioKitPlatformInfos", "UUID", Kind::Uuid},
    {"ioKitRootInfos", others, Kind::Model},
    {"ioKitGraphicsCards", others, Kind::Model},
    {"ioKitUsbDevices", others, Kind::Model},
    {"ioKitUsbDevices", "Device name", Kind::Product},
    {"ioKitUsbDevices", "USB Product Name", Kind::Product},
    {portSection, others, Kind::Model},
    {portSection, "Device Name", Kind::SerialPort},
    {portSection, "channel", Kind::None},
    {"checkFtdiDriver", others, Kind::Model},
    {"bonjourVersion", others, Kind::Model},
    {"defaultEmailApp", others, Kind::Model},
    {"defaultEmailApp", "Default e-mail app", Kind::Path},
    {"qtDateTime", others, Kind::Model},
    {"qtGlobal", others, Kind::Model},
    {"qtCoreApplication", others, Kind::Model},
    {"qtCoreApplication", "Application DirPath", Kind::Path},
    {"qtCoreApplication", "Application FilePath", Kind::Path},
    {"qtCoreApplication", "Organization Domain", Kind::Product},
    {"qtCoreApplication", "Organization Name", Kind::Product},
    {"qtCoreApplication", "Library Paths", Kind::Path},
    {"qtLocale", others, Kind::Model},
    {"qtScreens", others, Kind::Model},
    {"qtScreens", "Name", Kind::Product},
    {"qtDesktop", others, Kind::Model},
    {"qtDesktopServices", others, Kind::Path},
    {"qtPrinterInfo", others, Kind::Model},
    {"qtPrinterInfo", "Available printers", Kind::Printer},
    {"qtHostInfo", others, Kind::Model},
    {"qtHostInfo", "Local host name", Kind::Host},
    {"qtHostInfo", "Local domain name", Kind::Domain},
    {"network", others, Kind::Model},
    {"network", blockLine, Kind::Interface},
    {"network", "Hardware address", Kind::Address},
    {"network", "Addresses", Kind::Addresses},
    {"qtSystemEnvironment", others, Kind::Token}, // but for harmless variables
    {"openGL", others, Kind::Model},
};

bool isLabel(const QString& text, const EntryPlace& entry, const char* label)
{
    return entry.labelEnd - entry.labelBegin == static_cast<int>(std::strlen(label)) &&
           hasAt(text, entry.labelBegin, entry.labelEnd, label);
}

/// A version has the shape of an address: "1.2.3.4".
bool isVersion(const QByteArray& label)
{
    const QByteArray lower = label.toLower();
    const std::string_view letters(lower.constData(), static_cast<std::size_t>(lower.size()));
    for (const std::string_view word : {"version", "revision", "firmware", "build", "driver"}) {
        if (letters.find(word) != std::string_view::npos) {
            return true;
        }
    }
    return false;
}

Kind kindByLabel(const QString& label)
{
    if (label.endsWith(QLatin1String("S/N"), Qt::CaseInsensitive)) {
        return Kind::Serial;
    }
    const Kind ofVariable = Privacy::kindOfVariable(label);
    if (ofVariable == Kind::Person || ofVariable == Kind::Host || ofVariable == Kind::Domain) {
        return ofVariable;
    }
    const QByteArray key = label.toUtf8();
    const Kind kind = Privacy::privateKindOf(key);
    if (kind == Kind::None) {
        return isVersion(key) ? Kind::Model : Kind::None;
    }
    return kind == Kind::Constant || kind == Kind::Display ? Kind::Model : kind;
}

} // namespace

std::vector<SectionPrivacy> SectionPrivacy::all()
{
    std::vector<SectionPrivacy> sections(sectionFormats().size());
    for (std::size_t i = 0; i < sections.size(); ++i) {
        SectionPrivacy& section = sections[i];
        section.isKnown_ = true;
        for (const auto& row : rows) {
            if (std::strcmp(row.section, sectionFormats()[i].name) != 0) {
                continue;
            }
            if (row.label == others) {
                section.otherKind_ = section.blockKind_ = row.kind;
            } else if (row.label == blockLine) {
                section.blockKind_ = row.kind;
            } else {
                section.rows_.push_back({row.label, row.kind});
            }
        }
    }
    return sections;
}

const SectionPrivacy& SectionPrivacy::of(const SectionFormat* section)
{
    static const std::vector<SectionPrivacy> sections = all();
    static const SectionPrivacy unknown;
    return section == nullptr ? unknown
                              : sections[static_cast<std::size_t>(section - sectionFormats().data())];
}

Kind SectionPrivacy::valueKind(const QString& text, const EntryPlace& entry, bool isBluetooth) const
{
    for (const Row& row : rows_) {
        if (isLabel(text, entry, row.label)) {
            return isBluetooth && row.kind == Kind::SerialPort ? Kind::BluetoothPort : row.kind;
        }
    }
    return isKnown_ ? otherKind_ : kindByLabel(labelOf(text, entry));
}

bool SectionPrivacy::isBluetooth(const QString& text, const Piece& block, const SectionFormat& format)
{
    return isSection(&format, portSection) &&
           text.midRef(block.begin, block.end - block.begin)
               .contains(QLatin1String("Parent driver class: 'IOBluetooth"));
}

} // namespace norvex::SystemInfo::Internal
