#pragma once

/// @file
/// Writes the entries of the host's registry: one function for each kind of device, and the classes that they use.

#include "systeminfo/mac/platform/live/udevDevices.h"
#include "systeminfo/mac/platform/registry.h"

#include <QByteArray>

#include <optional>

namespace norvex {

/// The name of a class of the host's registry, then those of its superclasses. A class that is not in the table of
/// classes is a driver of the host, whose superclass is IOService. The chain of the empty name is empty.
Registry::ClassChain hostClassChain(const QByteArray& className);

/// Collects the properties of an entry. Absent values are not set.
class Properties
{
public:
    /// A string. Control characters become blanks, and malformed UTF-8 becomes replacement characters.
    Properties& text(const char* key, const DeviceText& value);
    Properties& boolean(const char* key, std::optional<bool> value);
    Properties& int32(const char* key, DeviceNumber value);
    Properties& int64(const char* key, DeviceNumber value);
    Properties& data(const char* key, const DeviceText& bytes);
    /// A dictionary; an empty one is not set.
    Properties& dictionary(const char* key, Properties value);

    ObjectRef<CFDictionaryRef> finish() { return builder_.finish(); }

private:
    Properties& set(const char* key, ValueRef value);

    DictionaryBuilder builder_;
    bool isEmpty_ = true;
};

/// Writes an entry. Entries that are begun while this object lives are its children.
class EntryWriter
{
public:
    EntryWriter(Registry& registry, const QByteArray& className, const QByteArray& name);
    EntryWriter(const EntryWriter&) = delete;
    EntryWriter& operator=(const EntryWriter&) = delete;
    ~EntryWriter();

    Properties properties;

private:
    Registry& registry_;
    RegistryEntry& entry_;
};

/// Append the entries of all devices of a kind below the open entry.
void appendPlatform(const Devices& devices, Registry& registry);
void appendDisplays(const Devices& devices, Registry& registry);
void appendAhciDisks(const Devices& devices, Registry& registry);
void appendAtapiDrives(const Devices& devices, Registry& registry);
void appendNvmeControllers(const Devices& devices, Registry& registry);
void appendNetworkInterfaces(const Devices& devices, Registry& registry);
void appendUsbDevices(const Devices& devices, Registry& registry);
void appendSerialPorts(const Devices& devices, Registry& registry);

} // namespace norvex
