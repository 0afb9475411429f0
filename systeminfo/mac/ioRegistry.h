#pragma once

/// @file
/// A typed view of the I/O registry and of CoreFoundation values. It owns everything from the moment it obtains it, so
/// that no section releases anything. A value of another kind than the expected one counts as absent.

#include "systeminfo/mac/frameworks.h"
#include "systeminfo/mac/registryClasses.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace norvex::SystemInfo::MacSysInfo {

/// Owns a reference to a CoreFoundation object, or none.
template <typename Ref>
class CFHolder
{
public:
    CFHolder() = default;
    /// Takes over a reference, as the Create and Copy functions give it; null for none.
    explicit CFHolder(Ref object) : object_(object) {}
    CFHolder(CFHolder&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    CFHolder& operator=(CFHolder other) noexcept
    {
        std::swap(object_, other.object_);
        return *this;
    }
    ~CFHolder()
    {
        if (object_ != nullptr) {
            CFRelease(object_);
        }
    }

    Ref get() const { return object_; }
    /// Gives up the reference, for a call that consumes it.
    Ref take() { return std::exchange(object_, nullptr); }
    explicit operator bool() const { return object_ != nullptr; }

private:
    Ref object_ = nullptr;
};

/// A property key as the registry takes it; null on failure.
CFHolder<CFStringRef> makeKey(const char* key);

/// A value of a property, or none. Each getter answers only for a value of its kind.
class PropertyValue
{
public:
    PropertyValue() = default;
    /// Takes over a reference; null for none.
    explicit PropertyValue(CFTypeRef value) : value_(value) {}

    bool isPresent() const { return bool(value_); }
    CFStringRef string() const { return as<CFStringRef>(CFStringGetTypeID()); }
    CFNumberRef number() const { return as<CFNumberRef>(CFNumberGetTypeID()); }
    CFDataRef data() const { return as<CFDataRef>(CFDataGetTypeID()); }
    CFDictionaryRef dictionary() const { return as<CFDictionaryRef>(CFDictionaryGetTypeID()); }
    std::optional<bool> boolean() const;
    /// A number that is stored as a signed 32-bit integer.
    std::optional<std::int32_t> int32() const;
    /// A number that is stored as a signed 64-bit integer.
    std::optional<std::int64_t> int64() const;

private:
    template <typename Ref>
    Ref as(CFTypeID type) const
    {
        return value_ && CFGetTypeID(value_.get()) == type ? static_cast<Ref>(value_.get()) : nullptr;
    }

    CFHolder<CFTypeRef> value_;
};

/// The value of a key in a dictionary; none for a null dictionary.
PropertyValue valueIn(CFDictionaryRef dictionary, const char* key);

/// The bytes of a data value.
QByteArray bytesOf(CFDataRef data);

/// A string in UTF-8, up to its first zero character; nothing when CoreFoundation cannot convert it.
std::optional<std::string> utf8Of(CFStringRef string);

/// A string as `CFStringGetCStringPtr` gives it without a copy, which it does for plain ASCII only; a null QString for
/// all other strings and for null.
QString fastString(CFStringRef string);

/// Owns the handle of a registry entry, or none.
class IoObject
{
public:
    IoObject() = default;
    /// Takes over a handle; 0 for none.
    explicit IoObject(io_object_t handle) : handle_(handle) {}
    IoObject(IoObject&& other) noexcept : handle_(std::exchange(other.handle_, io_object_t(0))) {}
    IoObject& operator=(IoObject other) noexcept
    {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~IoObject()
    {
        if (handle_ != 0) {
            IOObjectRelease(handle_);
        }
    }

    io_object_t get() const { return handle_; }
    explicit operator bool() const { return handle_ != 0; }

private:
    io_object_t handle_ = 0;
};

/// An entry of the registry, or none.
class IoEntry : public IoObject
{
public:
    using IoObject::IoObject;

    /// All its own properties; null on failure.
    CFHolder<CFDictionaryRef> properties() const;
    /// One of its own properties.
    PropertyValue property(const char* key) const;
    /// The first value of a key in a depth-first search of the entry and all entries below it.
    PropertyValue search(const char* key) const;
    /// The entry above it; none for the root and on failure.
    IoEntry parent() const;
    bool conformsTo(RegistryClass registryClass) const { return conformsTo(nameOf(registryClass)); }
    bool conformsTo(const char* className) const;
    /// The name of its class; null on failure.
    CFHolder<CFStringRef> className() const;
};

/// An iterator over entries, or none, which has no entries.
class IoIterator : public IoObject
{
public:
    using IoObject::IoObject;

    /// The next entry; none at the end.
    IoEntry next() { return IoEntry(get() == 0 ? io_object_t(0) : IOIteratorNext(get())); }
};

/// The entries of a class. On failure logs a warning and gives no iterator.
IoIterator servicesOfClass(RegistryClass registryClass);

/// The first entry of a class, or none.
IoEntry firstServiceOfClass(RegistryClass registryClass);

/// Opens an iterator over the entries of a class on the registry's main port.
/// @param iterator receives the handle on success
/// @return 0, or the code of the call that failed, after a warning
int openServiceIterator(RegistryClass registryClass, unsigned int* iterator);

/// The iterator that an exported function opens; none when it fails, after a warning.
/// @param name of the function, for the warning
IoIterator iteratorFrom(int (*function)(unsigned int* iterator), const char* name);

} // namespace norvex::SystemInfo::MacSysInfo
