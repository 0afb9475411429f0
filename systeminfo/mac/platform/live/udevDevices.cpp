#include "systeminfo/mac/platform/live/udevDevices.h"

#include <QList>

#include <cstring>
#include <utility>

namespace norvex {

namespace {

DeviceText textOf(const char* text)
{
    return text != nullptr && *text != 0 ? DeviceText(text) : std::nullopt;
}

} // namespace

DeviceNumber numberIn(const DeviceText& text, int base)
{
    bool isNumber = false;
    const qint64 value = text ? text->trimmed().toLongLong(&isNumber, base) : 0;
    return isNumber ? DeviceNumber(value) : std::nullopt;
}

QByteArray Device::path() const
{
    return device_ != nullptr ? QByteArray(udev_device_get_syspath(device_)) : QByteArray();
}

QByteArray Device::name() const
{
    return device_ != nullptr ? QByteArray(udev_device_get_sysname(device_)) : QByteArray();
}

QByteArray Device::subsystem() const
{
    return device_ != nullptr ? QByteArray(udev_device_get_subsystem(device_)) : QByteArray();
}

QByteArray Device::type() const
{
    return device_ != nullptr ? QByteArray(udev_device_get_devtype(device_)) : QByteArray();
}

DeviceText Device::driver() const
{
    return device_ != nullptr ? textOf(udev_device_get_driver(device_)) : std::nullopt;
}

DeviceText Device::node() const
{
    return device_ != nullptr ? textOf(udev_device_get_devnode(device_)) : std::nullopt;
}

DeviceText Device::attribute(const char* name) const
{
    return device_ != nullptr ? textOf(udev_device_get_sysattr_value(device_, name)) : std::nullopt;
}

DeviceText Device::property(const char* name) const
{
    return device_ != nullptr ? textOf(udev_device_get_property_value(device_, name)) : std::nullopt;
}

Device Device::parent() const
{
    return Device(device_ != nullptr ? udev_device_get_parent(device_) : nullptr);
}

Device Device::parent(const char* subsystem, const char* type) const
{
    return Device(device_ != nullptr ? udev_device_get_parent_with_subsystem_devtype(device_, subsystem, type)
                                     : nullptr);
}

bool Devices::isVirtual(const char* path)
{
    return std::strstr(path, "/devices/virtual/") != nullptr;
}

Devices::Devices() : context_(udev_new()) {}

UdevOwner<udev_enumerate> Devices::devicesOf(const char* subsystem, const char* namePatterns) const
{
    UdevOwner<udev_enumerate> list(udev_enumerate_new(context_.get()));
    if (!list || udev_enumerate_add_match_subsystem(list.get(), subsystem) < 0) {
        return nullptr;
    }
    for (const QByteArray& pattern : QByteArray(namePatterns).split('|')) {
        if (udev_enumerate_add_match_sysname(list.get(), pattern.constData()) < 0) {
            return nullptr;
        }
    }
    return udev_enumerate_scan_devices(list.get()) >= 0 ? std::move(list) : nullptr;
}

DatabaseNames Devices::databaseNames(const Device& device) const
{
    DatabaseNames names{device.property("ID_VENDOR_FROM_DATABASE"),
                        device.property("ID_MODEL_FROM_DATABASE")};
    const DeviceText alias = names.vendor && names.model ? std::nullopt : device.attribute("modalias");
    if (!alias) {
        return names;
    }
    if (!std::exchange(hasOpenedDatabase_, true)) {
        database_.reset(udev_hwdb_new(context_.get()));
    }
    udev_list_entry* entry =
        database_ ? udev_hwdb_get_properties_list_entry(database_.get(), alias->constData(), 0) : nullptr;
    for (; entry != nullptr; entry = udev_list_entry_get_next(entry)) {
        const char* key = udev_list_entry_get_name(entry);
        if (!names.vendor && std::strcmp(key, "ID_VENDOR_FROM_DATABASE") == 0) {
            names.vendor = textOf(udev_list_entry_get_value(entry));
        }
        if (!names.model && std::strcmp(key, "ID_MODEL_FROM_DATABASE") == 0) {
            names.model = textOf(udev_list_entry_get_value(entry));
        }
    }
    return names;
}

} // namespace norvex
