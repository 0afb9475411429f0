#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/mac/propertyLines.h"
#include "systeminfo/mac/usbVendors.h"

#include <QtGlobal>

namespace norvex::SystemInfo::MacSysInfo {

using namespace Internal;

namespace {

using Info = usbDeviceInfoStruct_t;

static_assert(sizeof(Info::name) == sizeof(io_name_t), "the record's name is what IOKit fills");

struct NumberField
{
    unsigned int Info::*field;
    const char* key;
    const char* name;        ///< in the warning about the stored type
    const char* readFailure; ///< the warning about a failed read; null for none
};

const NumberField numberFields[] = {
    {&Info::vendorId, "idVendor", "vendorId", "vendorId CFNumberGetValue failed!\n"},
    {&Info::productId, "idProduct", "productId", nullptr},
    {&Info::locationId, "locationID", "locationId", "locationId CFNumberGetValue failed!\n"},
    {&Info::address, "USB Address", "address", "USB address CFNumberGetValue failed!\n"},
    {&Info::speed, "Device Speed", "USB Device Speed", "USB Device Speed CFNumberGetValue failed!\n"},
};

void readNumber(const IoEntry& device, const NumberField& field, Info& info)
{
    const PropertyValue property = device.property(field.key);
    const CFNumberRef number = property.number();
    if (number == nullptr) {
        return;
    }
    const CFNumberType type = CFNumberGetType(number);
    if (type != kCFNumberSInt32Type) {
        qWarning("%s: not expected numberType=%d\n", field.name, static_cast<int>(type));
        return;
    }
    std::int32_t value = 0;
    if (CFNumberGetValue(number, kCFNumberSInt32Type, &value)) {
        info.*field.field = static_cast<unsigned int>(value);
    } else if (field.readFailure != nullptr) {
        qWarning("%s", field.readFailure);
    }
}

int readDevice(const IoEntry& device, Info& info)
{
    info = Info();
    for (const NumberField& field : numberFields) {
        readNumber(device, field, info);
    }
    const int result = IORegistryEntryGetName(device.get(), info.name);
    info.productName = fastString(device.property("USB Product Name").string());
    info.vendorName = fastString(device.property("USB Vendor Name").string());
    return result;
}

QString speedText(unsigned int code)
{
    static const char* const texts[] = {"low (up to 1.5Mbit/s)", "full (up to 12Mbit/s)",
                                        "high (up to 480Mbit/s)", "super speed (up to 4000Mbit/s)"};
    const bool isKnown = code < sizeof texts / sizeof *texts;
    return QString::fromLatin1(isKnown ? texts[code] : "unknown");
}

void appendDevice(SectionText& section, const Info& info)
{
    section.quotedLine("Device name: ", QString::fromUtf8(info.name))
        .line("Vendor ID: ",
              hexadecimal(info.vendorId, 4) + QLatin1Char(' ') + usbVendorSuffix(info.vendorId))
        .line("Product ID:  ", hexadecimal(info.productId, 4))
        .line("Location ID: ", hexadecimal(info.locationId, 8))
        .line("USB Address: ", hexadecimal(info.address, 2) + QLatin1String(" (bus number)"))
        .line("Speed:       ", QStringLiteral("0x%1 = ").arg(info.speed) + speedText(info.speed));
    if (!info.productName.isEmpty()) {
        section.quotedLine("USB Product Name: ", info.productName);
    }
    if (!info.vendorName.isEmpty()) {
        section.quotedLine("USB Vendor Name: ", info.vendorName);
    }
    section.line(deviceSeparator());
}

} // namespace

int ioKitGetUsbDevIterator(unsigned int* iterator)
{
    return openServiceIterator(RegistryClass::UsbDevice, iterator);
}

int ioKitGetUsbDevInfo(unsigned int device, usbDeviceInfoStruct_t* info)
{
    // The IoEntry releases a reference, and the caller's is not its to release.
    return readDevice(IoEntry(IOObjectRetain(device) == KERN_SUCCESS ? device : 0), *info);
}

QString ioKitUsbDevices()
{
    SectionText section(sNewLine);
    section.line("Attached USB devices (from IOKit):");
    IoIterator devices = iteratorFrom(ioKitGetUsbDevIterator, "ioKitGetUsbDevIterator");
    Info info;
    while (const IoEntry device = devices.next()) {
        const int result = readDevice(device, info);
        if (result == KERN_SUCCESS) {
            appendDevice(section, info);
        } else {
            qWarning("ioKitGetUsbDevInfo returned 0x%08x\n", static_cast<unsigned int>(result));
        }
    }
    return section.text();
}

} // namespace norvex::SystemInfo::MacSysInfo
