#include "systeminfo/mac/platform/live/entries.h"

namespace norvex {

namespace {

// The kernel's PC serial driver keeps places for ports that a machine may turn out to have. Such a place has no
// chip; it is none either when only the administrator may know, as with older kernels.
bool isPlaceholder(const Device& port, const Device& device)
{
    const auto chip = port.number("type");
    return chip ? *chip == 0 : device.driver() == QByteArray("serial8250");
}

// What the port's driver is attached to: the kernel may put devices of its own in between.
Device deviceBehind(const Device& port)
{
    Device device = port.parent();
    while (device && (device.subsystem() == "serial-base" || device.subsystem() == "usb-serial")) {
        device = device.parent();
    }
    return device;
}

// The class that a Mac has for the devices of a bus.
DeviceText providerClass(const QByteArray& subsystem)
{
    if (subsystem == "usb") {
        return QByteArray("IOUSBInterface");
    }
    if (subsystem == "pci") {
        return QByteArray("IOPCIDevice");
    }
    if (subsystem == "pnp" || subsystem == "acpi") {
        return QByteArray("IOACPIPlatformDevice");
    }
    return std::nullopt;
}

// USB's communication devices are modems when they say that they take a modem's commands.
bool isModem(const Device& device)
{
    const qint64 commands = device.number("bInterfaceProtocol", 16).value_or(0);
    return device.driver() == QByteArray("cdc_acm") && commands >= 1 && commands <= 6;
}

void appendPort(const Device& port, const Device& device, Registry& registry)
{
    const QByteArray driverName = device.driver().value_or(QByteArray());
    EntryWriter driver(registry, driverName, driverName);
    driver.properties.text("IOProviderClass", providerClass(device.subsystem()));
    if (device.subsystem() == "usb") {
        const Device adapter = device.parent("usb", "usb_device");
        driver.properties.int64("idVendor", adapter.number("idVendor", 16))
            .int64("idProduct", adapter.number("idProduct", 16));
    }
    const bool modem = isModem(device);
    const EntryWriter stream(registry, modem ? "IOModemSerialStreamSync" : "IOSerialStreamSync", port.name());
    EntryWriter client(registry, "IOSerialBSDClient", "IOSerialBSDClient");
    client.properties.text("IOSerialBSDClientType", modem ? "IOModemStream" : "IORS232SerialStream")
        .text("IOCalloutDevice", port.node());
}

} // namespace

void appendSerialPorts(const Devices& devices, Registry& registry)
{
    // The names with a number right behind "tty" are the many virtual consoles, which take long to look at.
    devices.forEach("tty", "tty[!0-9]*|[!t]*", [&](const Device& port) {
        const Device device = deviceBehind(port);
        if (!isPlaceholder(port, device)) {
            appendPort(port, device, registry);
        }
    });
}

} // namespace norvex
