#pragma once

/// @file
/// The parts of the host's registry: one function for each kind of device, and what they write entries with.

#include "systeminfo/mac/platform/live/udevDevices.h"
#include "systeminfo/mac/platform/registry.h"

#include <QByteArray>

#include <optional>

namespace norvex {

/// A class of the host's registry, then its superclasses. A class that the table of classes does not have is a
/// driver of the host, so it is a service; the empty name is no class at all.
Registry::ClassChain liveClassChain(const QByteArray& className);

/// Properties under construction. A value that is absent is not set.
class Properties
{
public:
    /// A string. Control characters, which no report wants, become blanks; what is no UTF-8 is replaced.
    Properties& text(const char* key, const DeviceText& value);
    Properties& boolean(const char* key, std::optional<bool> value);
    Properties& int32(const char* key, DeviceNumber value);
    Properties& int64(const char* key, DeviceNumber value);
    Properties& data(const char* key, const DeviceText& bytes);
    /// A dictionary, unless it is empty.
    Properties& dictionary(const char* key, Properties value);

    ObjectRef<CFDictionaryRef> finish() { return builder_.finish(); }

private:
    Properties& set(const char* key, ValueRef value);

    DictionaryBuilder builder_;
    bool isEmpty_ = true;
};

/// An entry under construction: those that are begun while it lives are below it.
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

/// Each appends the entries of its devices to the one that is open.
void appendPlatform(const Devices& devices, Registry& registry);
void appendDisplays(const Devices& devices, Registry& registry);
void appendAhciDisks(const Devices& devices, Registry& registry);
void appendAtapiDrives(const Devices& devices, Registry& registry);
void appendNvmeControllers(const Devices& devices, Registry& registry);
void appendNetworkInterfaces(const Devices& devices, Registry& registry);
void appendUsbDevices(const Devices& devices, Registry& registry);
void appendSerialPorts(const Devices& devices, Registry& registry);

} // namespace norvex
