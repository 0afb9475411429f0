#include "systeminfo/mac/fileQueries.h"
#include "systeminfo/mac/ioRegistry.h"
#include "systeminfo/mac/norvexSystemInfoMac.h"

#include <QtGlobal>

namespace norvex::SystemInfo::MacSysInfo {

namespace {

// A warning that stands in the report as well.
void appendWarning(QString& section, const QString& text)
{
    qWarning("%s", qPrintable(text));
    section += text + sNewLine;
}

void appendQuoted(QString& section, const char* text, const PropertyValue& value)
{
    if (const CFStringRef string = value.string()) {
        section += QString::fromLatin1(text).arg(fastString(string)) + sNewLine;
    }
}

QString hexId(std::int64_t id)
{
    return QStringLiteral("0x%1").arg(static_cast<qulonglong>(id), 4, 16, QLatin1Char('0'));
}

// The device or driver above the port: the adapter, when it is a USB one.
void appendProvider(QString& section, const IoEntry& provider)
{
    const auto className = provider.className();
    const QString driver = fastString(className.get());
    if (!driver.isNull()) {
        section += QStringLiteral("Parent driver class: '%1'").arg(driver) + sNewLine;
    }
    appendQuoted(section, "Provider Class: '%1'", provider.property("IOProviderClass"));

    if (const auto vendorId = provider.property("idVendor").int64()) {
        const QString vendor = convertUsbVendorIdToName(static_cast<unsigned int>(*vendorId));
        section += QLatin1String("USB Vendor ID: ") + hexId(*vendorId) +
                   (vendor.isEmpty() ? QString() : QStringLiteral(" = %1").arg(vendor)) + sNewLine;
    }
    if (const auto productId = provider.property("idProduct").int64()) {
        section += QLatin1String("USB Product ID: ") + hexId(*productId) + sNewLine;
    }
}

void appendPort(QString& section, const IoEntry& client, CFStringRef calloutDevice)
{
    const QString path = fastString(calloutDevice);
    section += QStringLiteral("Device Name: '%1'").arg(path) + sNewLine;
    if (!deviceFileExists(path)) {
        appendWarning(section, QStringLiteral("!!Device does not exist as file!!"));
    }
    const IoEntry driver = client.parent();
    if (!driver) {
        return;
    }
    appendQuoted(section, "channel: '%1'", driver.property("channel"));
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
    return openServiceIterator("IOSerialBSDClient", iterator);
}

QString ioKitGetRs232SerialDevices(bool rs232Only)
{
    QString section = QLatin1String("RS232 Serial Devices Info (from IOKit)") + sNewLine;
    io_iterator_t handle = 0;
    const int opened = ioKitGetSerialBsdDevicesIterator(&handle);
    if (opened != KERN_SUCCESS) {
        qWarning("ioKitGetSerialBsdDevicesIterator returned 0x%08x\n", static_cast<unsigned int>(opened));
        return section;
    }
    IoIterator clients(handle);
    while (const IoEntry client = clients.next()) {
        if (!isListed(client, rs232Only)) {
            continue;
        }
        const PropertyValue calloutDevice = client.search("IOCalloutDevice");
        if (const CFStringRef device = calloutDevice.string()) {
            appendPort(section, client, device);
        } else {
            appendWarning(section, QStringLiteral("ioCalloutDeviceName == NULL!! Maybe no correct driver "
                                                  "installed for that RS232 device!"));
        }
        section += QString(40, QLatin1Char('_')) + sNewLine;
    }
    return section;
}

} // namespace norvex::SystemInfo::MacSysInfo
