#pragma once

/// @file
/// libudev's devices, each owned by the list that visits it, and the answers to the questions asked of them.

#include <QByteArray>

#include <libudev.h>

#include <memory>
#include <optional>

namespace norvex {

/// What a device says of itself; nothing when it does not say, or what it says is empty.
using DeviceText = std::optional<QByteArray>;
using DeviceNumber = std::optional<qint64>;

/// A text as an integer; nothing when it is none. A base of 16 takes a leading "0x".
DeviceNumber numberIn(const DeviceText& text, int base = 10);

/// Gives an object of libudev back.
struct UdevRelease
{
    void operator()(udev* context) const { udev_unref(context); }
    void operator()(udev_enumerate* list) const { udev_enumerate_unref(list); }
    void operator()(udev_device* device) const { udev_device_unref(device); }
    void operator()(udev_hwdb* database) const { udev_hwdb_unref(database); }
};

template <typename Object>
using UdevOwner = std::unique_ptr<Object, UdevRelease>;

/// A device that somebody else owns, or none. No question to no device has an answer, so chains of questions need
/// no tests between them. A parent lives as long as its child.
class Device
{
public:
    Device() = default;
    explicit Device(udev_device* device) : device_(device) {}

    explicit operator bool() const { return device_ != nullptr; }

    QByteArray path() const;      ///< its folder below /sys
    QByteArray name() const;      ///< the kernel's name for it
    QByteArray subsystem() const; ///< empty for none
    QByteArray type() const;      ///< what its subsystem tells it apart by, such as "disk" and "partition"
    DeviceText driver() const;
    DeviceText node() const; ///< its file in /dev

    /// A file of its folder, without the line end.
    DeviceText attribute(const char* name) const;
    DeviceNumber number(const char* attributeName, int base = 10) const
    {
        return numberIn(attribute(attributeName), base);
    }
    /// A property from the kernel's event or udev's database.
    DeviceText property(const char* name) const;

    Device parent() const;
    /// The closest device above it of a subsystem and, unless null, a type.
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

    /// Calls @p visit with each device of a subsystem, parents before their children. Those that the kernel
    /// makes up, such as consoles, bridges and loop devices, are left out.
    /// @param namePatterns shell patterns, separated by bars; the kernel's name matches one of them
    template <typename Visit>
    void forEach(const char* subsystem, const char* namePatterns, Visit visit) const
    {
        const auto list = devicesOf(subsystem, namePatterns);
        udev_list_entry* place = list ? udev_enumerate_get_list_entry(list.get()) : nullptr;
        for (; place != nullptr; place = udev_list_entry_get_next(place)) {
            if (isVirtual(udev_list_entry_get_name(place))) {
                continue;
            }
            // A device that was just unplugged is in the list, but cannot be opened any more.
            const UdevOwner<udev_device> device(
                udev_device_new_from_syspath(context_.get(), udev_list_entry_get_name(place)));
            if (device) {
                visit(Device(device.get()));
            }
        }
    }

    /// What the hardware database says of a device: as udev has noted it, or looked up where it has not.
    DatabaseNames databaseNames(const Device& device) const;

private:
    static bool isVirtual(const char* path);
    UdevOwner<udev_enumerate> devicesOf(const char* subsystem, const char* namePatterns) const;

    UdevOwner<udev> context_;
    mutable UdevOwner<udev_hwdb> database_; // opened by the first look-up
    mutable bool hasOpenedDatabase_ = false;
};

} // namespace norvex
