#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/mac/propertyLines.h"

namespace norvex::SystemInfo::MacSysInfo {

using namespace Internal;

namespace {

const PropertyLine interfaceLines[] = {
    {"  BSD Name:         ", "BSD Name", PropertyKind::String},
    {"  Built-in:         ", "IOBuiltin", PropertyKind::YesNo},
    {"  Enabled:          ", "IOControllerEnabled", PropertyKind::YesNo},
    {"  Primary IF:       ", "IOPrimaryInterface", PropertyKind::YesNo},
};

const PropertyLine wirelessLines[] = {
    {"  802.11 Band:           ", "IO80211Band", PropertyKind::String},
    {"  802.11 Country Code:   ", "IO80211CountryCode", PropertyKind::String},
    {"  802.11 Locale:         ", "IO80211Locale", PropertyKind::String},
    {"  802.11 Driver Version: ", "IO80211DriverVersion", PropertyKind::String},
    {"  802.11 SSID:           ", "IO80211SSID", PropertyKind::String},
    {"  802.11 Channel:        ", "IO80211Channel", PropertyKind::Int32},
    {"  802.11 BSSID:          ", "IO80211BSSID", PropertyKind::Bytes},
};

const PropertyLine controllerLines[] = {
    {"  Model:            ", "IOModel", PropertyKind::String},
    {"  Vendor:           ", "IOVendor", PropertyKind::String},
    {"  Product name:     ", "Product Name", PropertyKind::String},
    {"  Chip:             ", "Chip", PropertyKind::String},
    {"  MAC address:      ", "IOMACAddress", PropertyKind::Bytes},
};

void appendController(SectionText& section, const IoEntry& controller)
{
    section.line("  AppleUSBEthernet: ", yesNo(controller.conformsTo(RegistryClass::UsbEthernet)));
    appendPropertyLines(section, controller.properties().get(), controllerLines);
}

void appendInterface(SectionText& section, const IoEntry& entry, CFDictionaryRef properties)
{
    appendPropertyLines(section, properties, interfaceLines);
    const bool isWireless = entry.conformsTo(RegistryClass::WirelessInterface);
    section.line("  802.11 wireless:  ", yesNo(isWireless));
    if (isWireless) {
        appendPropertyLines(section, properties, wirelessLines);
    }
    if (const IoEntry controller = entry.parent()) {
        appendController(section, controller);
    }
}

} // namespace

QString ioKitEthernetDevices()
{
    SectionText section(sNewLine);
    section.line("Ethernet interfaces (from IOKit)");
    IoIterator interfaces = servicesOfClass(RegistryClass::EthernetInterface);
    int number = 1;
    while (const IoEntry entry = interfaces.next()) {
        const auto properties = entry.properties();
        if (!properties) {
            continue;
        }
        section.line("#", QString::number(number++));
        appendInterface(section, entry, properties.get());
    }
    return section.text();
}

} // namespace norvex::SystemInfo::MacSysInfo
