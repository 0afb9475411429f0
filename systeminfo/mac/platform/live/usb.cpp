#include "systeminfo/mac/platform/live/entries.h"

#include <QList>

namespace norvex {

namespace {

constexpr qint64 hubClass = 0x09;
constexpr qint64 wirelessControllerClass = 0xe0;
constexpr qint64 miscellaneousClass = 0xef;

struct Speed
{
    const char* megabits; ///< as the kernel writes it
    int code;
};

constexpr Speed speeds[] = {{"1.5", 0}, {"12", 1}, {"480", 2}, {"5000", 3}, {"10000", 4}, {"20000", 5}};

DeviceNumber speedCode(const DeviceText& megabits)
{
    for (const Speed& speed : speeds) {
        if (megabits && *megabits == speed.megabits) {
            return speed.code;
        }
    }
    return std::nullopt;
}

/// The location as a Mac writes it: the bus in the highest byte, then a hexadecimal digit for the port at each hub on
/// the way to the device. Absent when a number does not fit.
DeviceNumber locationOf(const Device& device)
{
    const auto bus = device.number("busnum");
    const auto route = device.attribute("devpath");
    if (!bus || *bus < 0 || *bus > 0xff || !route) {
        return std::nullopt;
    }
    qint64 location = *bus << 24;
    if (*route == "0") { // the root hub
        return location;
    }
    int shift = 24;
    for (const QByteArray& text : route->split('.')) {
        const auto port = numberIn(text);
        shift -= 4;
        if (!port || *port < 1 || *port > 0xf || shift < 0) {
            return std::nullopt;
        }
        location |= *port << shift;
    }
    return location;
}

/// The product's name; a device without one is named after its class.
QByteArray nameOf(const DeviceText& product, qint64 deviceClass)
{
    if (product) {
        return *product;
    }
    switch (deviceClass) {
    case hubClass: return "HubDevice";
    case wirelessControllerClass: return "WirelessControllerDevice";
    case miscellaneousClass: return "MiscellaneousDevice";
    default: return "IOUSBDevice";
    }
}

const char* classOf(const Device& device, qint64 deviceClass)
{
    if (device.attribute("devpath") == QByteArray("0")) {
        return "IOUSBRootHubDevice";
    }
    return deviceClass == hubClass ? "IOUSBHubDevice" : "IOUSBDevice";
}

} // namespace

void appendUsbDevices(const Devices& devices, Registry& registry)
{
    devices.forEach("usb", "*", [&](const Device& device) {
        if (device.type() != "usb_device") { // an interface of a device
            return;
        }
        const auto product = device.attribute("product");
        const qint64 deviceClass = device.number("bDeviceClass", 16).value_or(0);
        EntryWriter entry(registry, classOf(device, deviceClass), nameOf(product, deviceClass));
        entry.properties.int32("idVendor", device.number("idVendor", 16))
            .int32("idProduct", device.number("idProduct", 16))
            .int32("locationID", locationOf(device))
            .int32("USB Address", device.number("devnum"))
            .int32("Device Speed", speedCode(device.attribute("speed")))
            .text("USB Product Name", product)
            .text("USB Vendor Name", device.attribute("manufacturer"));
    });
}

} // namespace norvex
