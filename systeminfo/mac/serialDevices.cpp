#include "systeminfo/mac/fileQueries.h"
#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/mac/propertyLines.h"
#include "systeminfo/mac/usbVendors.h"

#include <QtGlobal>

namespace norvex::SystemInfo::MacSysInfo {

using namespace Internal;

namespace {

/// Warns in the log and in the report.
void appendWarning(SectionText& section, const char* text)
{
    qWarning("%s", text);
    section.line(text);
}

QString idText(std::int64_t id)
{
    return hexadecimal(static_cast<quint64>(id), 4);
}

/// Appends the lines on what the port's driver is attached to, such as a USB adapter.
void appendProvider(SectionText& section, const IoEntry& provider)
{
    const auto className = provider.className();
    const QString driver = fastString(className.get());
    if (!driver.isNull()) {
        section.quotedLine("Parent driver class: ", driver);
    }
    appendQuotedString(section, "Provider Class: ", provider.property("IOProviderClass"));

    if (const auto vendorId = provider.property("idVendor").int64()) {
        section.line("USB Vendor ID: ",
                     idText(*vendorId) + usbVendorSuffix(static_cast<unsigned int>(*vendorId)));
    }
    if (const auto productId = provider.property("idProduct").int64()) {
        section.line("USB Product ID: ", idText(*productId));
    }
}

void appendPort(SectionText& section, const IoEntry& client, CFStringRef calloutDevice)
{
    const QString path = fastString(calloutDevice);
    section.quotedLine("Device Name: ", path);
    if (!deviceFileExists(path)) {
        appendWarning(section, "!!Device does not exist as file!!");
    }
    const IoEntry driver = client.parent();
    if (!driver) {
        return;
    }
    appendQuotedString(section, "channel: ", driver.property("channel"));
    if (const IoEntry provider = driver.parent()) {
        appendProvider(section, provider);
    }
}

bool isListed(const IoEntry& client, bool rs232Only)
{
    const PropertyValue type = client.search("IOSerialBSDClientType");
    const CFStringRef name = type.string();
    if (name == nullptr) {
        qWarning("Could not determine the serialBsdType!");
        return true;
    }
    return !rs232Only || fastString(name) == QLatin1String("IORS232SerialStream");
}

} // namespace

int ioKitGetSerialBsdDevicesIterator(unsigned int* iterator)
{
    return openServiceIterator(RegistryClass::SerialClient, iterator);
}

QString ioKitGetRs232SerialDevices(bool rs232Only)
{
    SectionText section(sNewLine);
    section.line("RS232 Serial Devices Info (from IOKit)");
    IoIterator clients = iteratorFrom(ioKitGetSerialBsdDevicesIterator, "ioKitGetSerialBsdDevicesIterator");
    while (const IoEntry client = clients.next()) {
        if (!isListed(client, rs232Only)) {
            continue;
        }
        const PropertyValue calloutDevice = client.search("IOCalloutDevice");
        if (const CFStringRef device = calloutDevice.string()) {
            appendPort(section, client, device);
        } else {
            appendWarning(section, "ioCalloutDeviceName == NULL!! Maybe no correct driver installed for that "
                                   "RS232 device!");
        }
        section.line(deviceSeparator());
    }
    return section.text();
}

} // namespace norvex::SystemInfo::MacSysInfo
