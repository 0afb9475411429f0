#include "systeminfo/mac/ioRegistry.h"
#include "systeminfo/mac/norvexSystemInfoMac.h"

#include <QStringList>
#include <QtGlobal>

namespace norvex::SystemInfo::MacSysInfo {

namespace {

using Info = usbDeviceInfoStruct_t;

static_assert(sizeof(Info::name) == sizeof(io_name_t), "the record's name is what IOKit fills");

struct NumberField
{
    unsigned int Info::*field;
    const char* key;
    const char* name;        // in the warning about the stored type
    const char* readFailure; // the warning when the read fails; null for none
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

QString hex(unsigned int number, int width)
{
    return QStringLiteral("%1").arg(qulonglong(number), width, 16, QLatin1Char('0'));
}

QString deviceBlock(const Info& info)
{
    const QString vendor = convertUsbVendorIdToName(info.vendorId);
    QStringList lines;
    lines += QStringLiteral("Device name: '%1'").arg(QString::fromUtf8(info.name));
    lines += QStringLiteral("Vendor ID: 0x%1 ").arg(hex(info.vendorId, 4)) +
             (vendor.isEmpty() ? QString() : QStringLiteral(" = %1").arg(vendor));
    lines += QStringLiteral("Product ID:  0x%1").arg(hex(info.productId, 4));
    lines += QStringLiteral("Location ID: 0x%1").arg(hex(info.locationId, 8));
    lines += QStringLiteral("USB Address: 0x%1 (bus number)").arg(hex(info.address, 2));
    lines += QStringLiteral("Speed:       0x%1 = ").arg(info.speed) + speedText(info.speed);
    if (!info.productName.isEmpty()) {
        lines += QStringLiteral("USB Product Name: '%1'").arg(info.productName);
    }
    if (!info.vendorName.isEmpty()) {
        lines += QStringLiteral("USB Vendor Name: '%1'").arg(info.vendorName);
    }
    lines += QString(40, QLatin1Char('_'));
    return lines.join(sNewLine) + sNewLine;
}

} // namespace

int ioKitGetUsbDevIterator(unsigned int* iterator)
{
    return openServiceIterator("IOUSBDevice", iterator);
}

int ioKitGetUsbDevInfo(unsigned int device, usbDeviceInfoStruct_t* info)
{
    // The entry here holds a reference of its own, beside the caller's.
    return readDevice(IoEntry(IOObjectRetain(device) == KERN_SUCCESS ? device : 0), *info);
}

QString ioKitUsbDevices()
{
    QString section = QLatin1String("Attached USB devices (from IOKit):") + sNewLine;
    io_iterator_t handle = 0;
    const int opened = ioKitGetUsbDevIterator(&handle);
    if (opened != KERN_SUCCESS) {
        qWarning("ioKitGetUsbDevIterator returned 0x%08x\n", static_cast<unsigned int>(opened));
        return section;
    }
    IoIterator devices(handle);
    Info info;
    while (const IoEntry device = devices.next()) {
        const int result = readDevice(device, info);
        if (result == KERN_SUCCESS) {
            section += deviceBlock(info);
        } else {
            qWarning("ioKitGetUsbDevInfo returned 0x%08x\n", static_cast<unsigned int>(result));
        }
    }
    return section;
}

} // namespace norvex::SystemInfo::MacSysInfo
