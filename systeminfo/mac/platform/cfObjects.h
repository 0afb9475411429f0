#pragma once

/// @file
/// The objects behind CoreFoundation's references, and the functions that make them. Inside the layer an ObjectRef owns
/// each reference. liveCounts() counts only the references that callers get through the C interface.

#include "systeminfo/mac/platform/coreFoundation.h"
#include "systeminfo/mac/platform/norvexPlatform.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace norvex {

enum class ObjectKind : std::uint8_t { String, Number, Boolean, Data, Dictionary, Array, Url };

/// The base of all objects.
class Object
{
public:
    /// The calls on this object that fail because its recording says so; a set of bits.
    enum Fault : std::uint8_t { NumberGetValue = 1, StringGetCStringPtr = 2, StringGetCString = 4 };

    explicit Object(ObjectKind kind) : kind_(kind) {}
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    ObjectKind kind() const { return kind_; }
    bool hasFault(Fault fault) const { return (faults_ & fault) != 0; }
    void addFaults(unsigned faults) { faults_ = std::uint8_t(faults_ | faults); }

    void retain() const { references_.fetch_add(1, std::memory_order_relaxed); }
    /// Gives up one reference; true when it was the last, and the caller destroys the object.
    bool release() const { return references_.fetch_sub(1, std::memory_order_acq_rel) == 1; }

private:
    mutable std::atomic<std::int32_t> references_{1};
    const ObjectKind kind_;
    std::uint8_t faults_ = 0;
};

/// Gives up a reference and destroys the object with the last one; null is ignored.
void releaseReference(CFTypeRef object);

inline const Object* objectOf(CFTypeRef object)
{
    return static_cast<const Object*>(object);
}

/// An owning reference inside the layer.
template <typename Ref>
class ObjectRef
{
public:
    ObjectRef() = default;
    /// Takes over the reference.
    explicit ObjectRef(Ref object) : object_(object) {}
    ObjectRef(const ObjectRef& other) : object_(other.object_)
    {
        if (object_ != nullptr) {
            objectOf(object_)->retain();
        }
    }
    ObjectRef(ObjectRef&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ObjectRef& operator=(ObjectRef other) noexcept
    {
        std::swap(object_, other.object_);
        return *this;
    }
    template <typename Other>
    ObjectRef(ObjectRef<Other> other) : object_(other.take()) // NOLINT: any object can be a value
    {}
    ~ObjectRef() { releaseReference(object_); }

    Ref get() const { return object_; }
    Ref take() { return std::exchange(object_, nullptr); }
    explicit operator bool() const { return object_ != nullptr; }

private:
    Ref object_ = nullptr;
};

using ValueRef = ObjectRef<CFTypeRef>;

/// Whether bytes are valid UTF-8.
bool isUtf8(std::string_view text);

ObjectRef<CFStringRef> makeString(std::string_view utf8);
/// An integer, stored in a type from kCFNumberSInt8Type to kCFNumberSInt64Type; its higher bits are cut off.
ObjectRef<CFNumberRef> makeInteger(CFNumberType type, std::int64_t value);
ObjectRef<CFNumberRef> makeReal(double value);
/// A reference to kCFBooleanTrue or kCFBooleanFalse.
ObjectRef<CFBooleanRef> makeBoolean(bool value);
ObjectRef<CFDataRef> makeData(std::string_view bytes);
ObjectRef<CFArrayRef> makeArray(std::vector<ValueRef> values);

/// Builds a dictionary. set() replaces the value of a key that is already there.
class DictionaryBuilder
{
public:
    DictionaryBuilder();
    DictionaryBuilder& set(ObjectRef<CFStringRef> key, ValueRef value);
    DictionaryBuilder& set(std::string_view key, ValueRef value)
    {
        return set(makeString(key), std::move(value));
    }
    ObjectRef<CFDictionaryRef> finish();

private:
    /// The index of a key's item, or the number of items when the key is new.
    std::size_t indexOf(CFStringRef key);

    ObjectRef<CFMutableDictionaryRef> dictionary_;
    /// Key -> index of its item; only for large dictionaries.
    std::unordered_map<std::string_view, std::size_t> indices_;
};

/// Adds to the number of references that callers hold to objects of this kind.
void countReference(const Object* object, int change);
/// Adds the numbers of references that callers hold to CoreFoundation objects.
void addLiveObjects(LiveCounts& counts);

/// Hands a reference out to a caller: counts and returns it.
template <typename Ref>
Ref handOut(Ref object)
{
    if (object != nullptr) {
        countReference(objectOf(object), 1);
    }
    return object;
}

/// Hands out a further reference to an object that the layer keeps.
template <typename Ref>
Ref handOutShared(Ref object)
{
    if (object != nullptr) {
        objectOf(object)->retain();
    }
    return handOut(object);
}

} // namespace norvex

struct __CFString : norvex::Object
{
    explicit __CFString(std::string_view text);

    std::string utf8;
    std::uint32_t hash;
    bool isAscii;
};

struct __CFNumber : norvex::Object
{
    __CFNumber(CFNumberType storedType, std::int64_t value)
        : Object(norvex::ObjectKind::Number), type(storedType), integer(value)
    {}
    explicit __CFNumber(double value)
        : Object(norvex::ObjectKind::Number), type(kCFNumberFloat64Type), real(value)
    {}

    CFNumberType type;
    std::int64_t integer = 0;
    double real = 0;
};

struct __CFBoolean : norvex::Object
{
    explicit __CFBoolean(bool on) : Object(norvex::ObjectKind::Boolean), value(on) {}

    bool value;
};

struct __CFData : norvex::Object
{
    explicit __CFData(std::string_view content) : Object(norvex::ObjectKind::Data), bytes(content) {}

    std::string bytes;
};

struct __CFArray : norvex::Object
{
    __CFArray() : Object(norvex::ObjectKind::Array) {}

    std::vector<norvex::ValueRef> values;
};

struct __CFDictionary : norvex::Object
{
    struct Item
    {
        norvex::ObjectRef<CFStringRef> key;
        norvex::ValueRef value;
    };

    __CFDictionary() : Object(norvex::ObjectKind::Dictionary) {}
    /// The value of a key, which the dictionary goes on owning; null when the key is missing.
    CFTypeRef value(CFStringRef key) const;

    std::vector<Item> items;
};

struct __CFURL : norvex::Object
{
    explicit __CFURL(std::string_view content) : Object(norvex::ObjectKind::Url), text(content) {}

    std::string text;
};
