#pragma once

/// @file
/// The host's devices, read with libudev.

#include <QByteArray>

#include <libudev.h>

#include <memory>
#include <optional>

namespace norvex {

/// A text that describes a device; absent when the device does not have it, or when it is empty.
using DeviceText = std::optional<QByteArray>;
using DeviceNumber = std::optional<qint64>;

/// A text as an integer; absent when it is not one. With base 16 it may begin with "0x".
DeviceNumber numberIn(const DeviceText& text, int base = 10);

/// Gives up a reference to an object of libudev.
struct UdevRelease
{
    void operator()(udev* context) const { udev_unref(context); }
    void operator()(udev_enumerate* list) const { udev_enumerate_unref(list); }
    void operator()(udev_device* device) const { udev_device_unref(device); }
    void operator()(udev_hwdb* database) const { udev_hwdb_unref(database); }
};

template <typename Object>
using UdevOwner = std::unique_ptr<Object, UdevRelease>;

/// A reference to a device that somebody else owns, or a null device. Getters on a null device return nothing, so calls
/// can be chained. A parent lives as long as its child.
class Device
{
public:
    Device() = default;
    explicit Device(udev_device* device) : device_(device) {}

    explicit operator bool() const { return device_ != nullptr; }

    /// The device's folder below /sys.
    QByteArray path() const;
    /// The kernel's name for the device.
    QByteArray name() const;
    /// The subsystem, empty when it has none.
    QByteArray subsystem() const;
    /// The kind of device within its subsystem, such as "disk" or "partition"; empty when it has none.
    QByteArray type() const;
    /// The driver that is bound to the device.
    DeviceText driver() const;
    /// The device's file in /dev.
    DeviceText node() const;

    /// The contents of a file in the device's folder, without the line end.
    DeviceText attribute(const char* name) const;
    DeviceNumber number(const char* attributeName, int base = 10) const
    {
        return numberIn(attribute(attributeName), base);
    }
    /// A property from the kernel's event or udev's database.
    DeviceText property(const char* name) const;

    /// The device above this one; a null device at the top.
    Device parent() const;
    /// The closest device above this one that has the subsystem and, unless @p type is null, the type.
    Device parent(const char* subsystem, const char* type = nullptr) const;

private:
    udev_device* device_ = nullptr;
};

/// The names of a device's vendor and model in the hardware database.
struct DatabaseNames
{
    DeviceText vendor;
    DeviceText model;
};

/// The host's devices.
class Devices
{
public:
    Devices();

    /// Calls @p visit with each device of a subsystem, parents before their children. Virtual devices, such as
    /// consoles, bridges and loop devices, are left out.
    /// @param namePatterns shell patterns, separated by bars, one of which the kernel's name must match
    template <typename Visit>
    void forEach(const char* subsystem, const char* namePatterns, Visit visit) const
    {
        const auto list = devicesOf(subsystem, namePatterns);
        udev_list_entry* entry = list ? udev_enumerate_get_list_entry(list.get()) : nullptr;
        for (; entry != nullptr; entry = udev_list_entry_get_next(entry)) {
            const char* const path = udev_list_entry_get_name(entry);
            if (isVirtual(path)) {
                continue;
            }
            // A device that was just unplugged is still in the list, but has no folder any more.
            const UdevOwner<udev_device> device(udev_device_new_from_syspath(context_.get(), path));
            if (device) {
                visit(Device(device.get()));
            }
        }
    }

    /// The names of a device's vendor and model: those that udev has stored with the device, else those in the
    /// hardware database.
    DatabaseNames databaseNames(const Device& device) const;

private:
    static bool isVirtual(const char* path);
    UdevOwner<udev_enumerate> devicesOf(const char* subsystem, const char* namePatterns) const;

    UdevOwner<udev> context_;
    mutable UdevOwner<udev_hwdb> database_; // opened by the first look-up
    mutable bool hasOpenedDatabase_ = false;
};

} // namespace norvex
