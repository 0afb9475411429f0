#include "systeminfo/mac/platform/live/entries.h"
#include "systeminfo/mac/platform/live/fileDescriptor.h"

#include <cstring>
#include <linux/ethtool.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <net/if_arp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

namespace norvex {

namespace {

/// NET_ADDR_SET, a value of addr_assign_type.
constexpr qint64 setByHand = 3;

/// The bytes of an address such as "00:1c:b3:0a:ff:07"; absent when there is none or all are zero.
DeviceText addressIn(const DeviceText& text)
{
    const QByteArray bytes = QByteArray::fromHex(text.value_or(QByteArray()));
    return bytes.count('\0') < bytes.size() ? DeviceText(bytes) : std::nullopt;
}

/// The address that the controller was made with, from its driver.
DeviceText permanentAddress(const Device& interface)
{
    const QByteArray name = interface.name();
    const auto index = interface.number("ifindex");
    if (name.size() >= IFNAMSIZ || !index || qint64(if_nametoindex(name.constData())) != *index) {
        return std::nullopt;
    }
    constexpr std::uint32_t longest = 32;
    alignas(ethtool_perm_addr) char buffer[sizeof(ethtool_perm_addr) + longest] = {};
    auto* head = reinterpret_cast<ethtool_perm_addr*>(buffer);
    head->cmd = ETHTOOL_GPERMADDR;
    head->size = longest;
    ifreq request = {};
    std::memcpy(request.ifr_name, name.constData(), std::size_t(name.size()));
    request.ifr_data = buffer;
    const FileDescriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    if (ioctl(socket.get(), SIOCETHTOOL, &request) < 0 || head->size > longest) {
        return std::nullopt;
    }
    return addressIn(QByteArray(buffer + sizeof(ethtool_perm_addr), int(head->size)).toHex());
}

/// The controller's address, which may differ from the one that the interface uses at the moment.
DeviceText hardwareAddress(const Device& interface)
{
    for (const char* file : {"phy80211/macaddress", "bonding_slave/perm_hwaddr"}) {
        if (auto address = addressIn(interface.attribute(file))) {
            return address;
        }
    }
    return interface.number("addr_assign_type") == setByHand ? permanentAddress(interface)
                                                             : addressIn(interface.attribute("address"));
}

bool isWireless(const Device& interface)
{
    return interface.type() == "wlan" || interface.attribute("wireless/status");
}

/// The device of an interface: the closest one on a bus for whose devices the database has names.
Device deviceBehind(const Device& interface)
{
    Device device = interface.parent();
    while (device && device.subsystem() != "usb" && device.subsystem() != "pci" &&
           device.subsystem() != "sdio") {
        device = device.parent();
    }
    return device;
}

/// Whether the controller is a part of the machine; absent for a card in a slot, which the firmware does not name.
std::optional<bool> isBuiltIn(const Device& interface, const Device& device)
{
    if (interface.parent().subsystem() == "platform") { // a part of the processor's chip
        return true;
    }
    const Device usb = device.subsystem() == "usb" ? device.parent("usb", "usb_device") : Device();
    const auto removable = (usb ? usb : device).attribute("removable");
    if (removable == QByteArray("removable")) {
        return false;
    }
    if (removable == QByteArray("fixed") || device.attribute("acpi_index") || device.attribute("index")) {
        return true;
    }
    return std::nullopt;
}

void appendInterface(const Device& interface, const Devices& devices, Registry& registry)
{
    const bool wireless = isWireless(interface);
    const Device device = deviceBehind(interface);
    const bool isUsb = device.subsystem() == "usb";
    const char* controllerClass = wireless ? "IO80211Controller"
                                  : isUsb  ? "AppleUSBEthernet"
                                           : "IOEthernetController";
    const DatabaseNames names = devices.databaseNames(device);
    const auto flags = interface.number("flags", 16);

    EntryWriter controller(registry, controllerClass,
                           interface.parent().driver().value_or(QByteArray(controllerClass)));
    controller.properties.text("IOModel", names.model)
        .text("IOVendor", names.vendor)
        .data("IOMACAddress", hardwareAddress(interface));
    if (isUsb) {
        controller.properties.text("Product Name", device.parent("usb", "usb_device").attribute("product"));
    }

    EntryWriter entry(registry, wireless ? "IO80211Interface" : "IOEthernetInterface", interface.name());
    entry.properties.text("BSD Name", interface.name()).boolean("IOBuiltin", isBuiltIn(interface, device));
    if (flags) {
        entry.properties.boolean("IOControllerEnabled", (*flags & IFF_UP) != 0);
    }
}

} // namespace

void appendNetworkInterfaces(const Devices& devices, Registry& registry)
{
    devices.forEach("net", "*", [&](const Device& interface) {
        if (interface.number("type") == ARPHRD_ETHER) {
            appendInterface(interface, devices, registry);
        }
    });
}

} // namespace norvex
