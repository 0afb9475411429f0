#include "systeminfo/mac/platform/live/entries.h"

namespace norvex {

namespace {

/// Whether a port may be missing. The kernel's PC serial driver sets up ports before it knows whether the machine has
/// them; a port that is missing has no chip. Older kernels show the chip only to the administrator; to other
/// users, every port of this driver counts as missing.
bool isPlaceholder(const Device& port, const Device& device)
{
    const auto chip = port.number("type");
    return chip ? *chip == 0 : device.driver() == QByteArray("serial8250");
}

/// The device that the port's driver is bound to. The kernel may put devices of its own between it and the port.
Device deviceBehind(const Device& port)
{
    Device device = port.parent();
    while (device && (device.subsystem() == "serial-base" || device.subsystem() == "usb-serial")) {
        device = device.parent();
    }
    return device;
}

/// The class that a Mac has for devices of a subsystem.
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

/// Whether a device is a modem: a USB communication device that accepts the commands of modems.
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
    // Names with a number right behind "tty" belong to virtual consoles. There are many, and reading them takes long.
    devices.forEach("tty", "tty[!0-9]*|[!t]*", [&](const Device& port) {
        const Device device = deviceBehind(port);
        if (!isPlaceholder(port, device)) {
            appendPort(port, device, registry);
        }
    });
}

} // namespace norvex
