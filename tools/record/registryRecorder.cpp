#include "tools/record/registryRecorder.h"

#include "tools/record/recordingWriter.h"

#include "systeminfo/mac/fileQueries.h"
#include "systeminfo/mac/ioRegistry.h"

#include <QSet>

#include <algorithm>
#include <array>
#include <unordered_map>
#include <unordered_set>

NORVEX_DEPRECATED_CALLS_BEGIN

namespace norvex::Tool {

namespace {

using namespace norvex::SystemInfo::MacSysInfo;
using Value = RecordedValue;

constexpr std::size_t deepestEntry = 512; // of a recording
constexpr int deepestValue = 512;

std::optional<Value> recordedValue(CFTypeRef object, int depth);

std::optional<Value> recordedNumber(CFNumberRef number)
{
    int size = 64;
    bool isReal = false;
    switch (CFNumberGetType(number)) {
    case kCFNumberSInt8Type: size = 8; break;
    case kCFNumberSInt16Type: size = 16; break;
    case kCFNumberSInt32Type: size = 32; break;
    case kCFNumberFloat32Type:
    case kCFNumberFloat64Type: isReal = true; break;
    default: break; // the smallest type that holds every integer
    }
    std::int64_t whole = 0;
    double real = 0;
    if (!isReal && CFNumberGetValue(number, kCFNumberSInt64Type, &whole)) {
        return Value::integer(size, whole);
    }
    return isReal && CFNumberGetValue(number, kCFNumberFloat64Type, &real)
               ? std::make_optional(Value::real(real))
               : std::nullopt;
}

/// Sorted by key: a dictionary has no order of its own.
Value recordedDictionary(CFDictionaryRef dictionary, int depth)
{
    Value result = Value::dictionary();
    const auto size = static_cast<std::size_t>(CFDictionaryGetCount(dictionary));
    std::vector<const void*> keys(size);
    std::vector<const void*> values(size);
    CFDictionaryGetKeysAndValues(dictionary, keys.data(), values.data());
    for (std::size_t i = 0; i < size; ++i) {
        auto value =
            CFGetTypeID(keys[i]) == CFStringGetTypeID() ? recordedValue(values[i], depth) : std::nullopt;
        if (value) {
            result.add(recordedText(static_cast<CFStringRef>(keys[i])), std::move(*value));
        }
    }
    result.sortKeys();
    return result;
}

Value recordedArray(CFArrayRef array, int depth)
{
    Value result = Value::array();
    for (CFIndex i = 0; i < CFArrayGetCount(array); ++i) {
        if (auto value = recordedValue(CFArrayGetValueAtIndex(array, i), depth)) {
            result.add(std::move(*value));
        }
    }
    return result;
}

/// Nothing for what a recording cannot hold: dates, sets, values that nest too deep.
std::optional<Value> recordedValue(CFTypeRef object, int depth)
{
    const CFTypeID type = CFGetTypeID(object);
    if (type == CFStringGetTypeID()) {
        return Value::text(recordedText(static_cast<CFStringRef>(object)));
    }
    if (type == CFNumberGetTypeID()) {
        return recordedNumber(static_cast<CFNumberRef>(object));
    }
    if (type == CFBooleanGetTypeID()) {
        return Value::boolean(CFBooleanGetValue(static_cast<CFBooleanRef>(object)) != 0);
    }
    if (type == CFDataGetTypeID()) {
        return Value::data(bytesOf(static_cast<CFDataRef>(object)));
    }
    if (type == CFDictionaryGetTypeID() && depth < deepestValue) {
        return recordedDictionary(static_cast<CFDictionaryRef>(object), depth + 1);
    }
    if (type == CFArrayGetTypeID() && depth < deepestValue) {
        return recordedArray(static_cast<CFArrayRef>(object), depth + 1);
    }
    return std::nullopt;
}

/// The system may cut a name inside a character. This completes it with some character that the system cuts to the same
/// bytes.
QByteArray withWholeEnd(const QByteArray& name)
{
    for (const char* missing : {"", "\x80", "\x80\x80", "\xa0\x80", "\x80\x80\x80", "\x90\x80\x80"}) {
        if (!QString::fromUtf8(name + missing).endsWith(QChar(QChar::ReplacementCharacter))) {
            return name + missing;
        }
    }
    return name;
}

QByteArray recordedName(const IoEntry& entry)
{
    io_name_t name = {};
    if (IORegistryEntryGetName(entry.get(), name) != KERN_SUCCESS) {
        return QByteArray();
    }
    const bool isFull = qstrlen(name) == sizeof name - 1;
    return xmlText(isFull ? withWholeEnd(name) : QByteArray(name));
}

std::uint64_t registryEntryId(const IoEntry& entry)
{
    std::uint64_t identity = 0;
    return IORegistryEntryGetRegistryEntryID(entry.get(), &identity) == KERN_SUCCESS ? identity : 0;
}

/// The class that the recorded entry passes for, null for none.
const QByteArray* overridingClass(const Value& properties)
{
    const Value* const name = properties.find("IOClassNameOverride");
    const bool isUsed = name != nullptr && name->kind == Value::Kind::Text &&
                        name->bytes.size() < static_cast<int>(sizeof(io_name_t));
    return isUsed ? &name->bytes : nullptr;
}

/// Names of classes in the order in which they were added, each once.
class ClassNames
{
public:
    bool contains(const QByteArray& name) const { return known_.contains(name); }

    void add(const QByteArray& name)
    {
        known_.insert(name);
        names_.push_back(name);
    }

    /// Removes a class and its superclasses.
    void removeFrom(const QByteArray& name)
    {
        while (contains(name)) {
            known_.remove(names_.back());
            names_.pop_back();
        }
    }

    Value recorded() const
    {
        Value result = Value::array();
        for (const QByteArray& name : names_) {
            result.add(Value::text(name));
        }
        return result;
    }

private:
    std::vector<QByteArray> names_;
    QSet<QByteArray> known_;
};

/// The classes of entries. For those that sections ask for, it asks as the sections do: a system lists some entries of
/// a class and not others, and an entry conforms to the class that it passes for.
class Classes
{
public:
    Classes()
    {
        for (std::size_t i = 0; i < classCount; ++i) {
            if (registryClasses[i].askedBy == AskedBy::Matching) {
                IoIterator services = servicesOfClass(static_cast<RegistryClass>(i));
                while (const IoEntry entry = services.next()) {
                    listed_[i].insert(registryEntryId(entry));
                }
                listed_[i].erase(0);
            }
        }
    }

    Value of(const IoEntry& entry, const Value& properties)
    {
        ClassNames names;
        const QByteArray* const overriding = overridingClass(properties);
        const auto className = overriding == nullptr ? entry.className() : CFHolder<CFStringRef>();
        if (className) {
            addFrom(className.get(), names);
        }
        const std::vector<const char*> present = askedClassesOf(entry, overriding, names);
        for (const char* name : present) {
            addFrom(name, names);
        }
        return names.recorded();
    }

private:
    /// The classes that sections find the entry to be of. Removes the others from the names.
    std::vector<const char*> askedClassesOf(const IoEntry& entry, const QByteArray* overriding,
                                            ClassNames& names)
    {
        // Conformance to the class that an entry passes for says nothing of its own class.
        const auto isKindOf = [&](const char* name) {
            return (overriding == nullptr || *overriding != name) && entry.conformsTo(name);
        };
        std::vector<const char*> present;
        const std::uint64_t identity = registryEntryId(entry);
        for (std::size_t i = 0; i < classCount; ++i) {
            const AskedClass& asked = registryClasses[i];
            const bool isListed = listed_[i].count(identity) > 0;
            if (asked.askedBy == AskedBy::Matching ? isListed : isKindOf(asked.name)) {
                present.push_back(asked.name);
            } else {
                names.removeFrom(asked.name);
            }
        }
        // An entry that passes for another class hides its own. This much is known of it.
        if (overriding != nullptr && isKindOf("IOService")) {
            present.push_back("IOService");
        }
        return present;
    }

    void addFrom(const char* className, ClassNames& names)
    {
        if (const auto name = names.contains(className) ? CFHolder<CFStringRef>() : makeKey(className)) {
            addFrom(name.get(), names);
        }
    }

    /// Adds a class and its superclasses, up to one that is there already.
    void addFrom(CFStringRef className, ClassNames& names)
    {
        for (QByteArray name = recordedText(className); !names.contains(name);
             name = recordedText(className)) {
            names.add(name);
            className = superclassOf(className, name);
            if (className == nullptr) {
                return;
            }
        }
    }

    /// Looks up each class once; null for no superclass.
    CFStringRef superclassOf(CFStringRef className, const QByteArray& name)
    {
        auto known = superclasses_.find(name.toStdString());
        if (known == superclasses_.end()) {
            CFHolder<CFStringRef> superclass(IOObjectCopySuperclassForClass(className));
            known = superclasses_.emplace(name.toStdString(), std::move(superclass)).first;
        }
        return known->second.get();
    }

    static constexpr std::size_t classCount = sizeof registryClasses / sizeof *registryClasses;

    std::array<std::unordered_set<std::uint64_t>, classCount> listed_; // the identifiers of entries
    std::unordered_map<std::string, CFHolder<CFStringRef>> superclasses_;
};

/// Walks the registry depth first, with its own stack.
class RegistryWalk
{
public:
    RegistryRecording record(IoEntry root)
    {
        open(std::move(root));
        for (;;) {
            OpenEntry& current = open_.back();
            if (IoEntry child = current.below.next()) {
                if (open_.size() < deepestEntry && belongsBelow(child, current.entry)) {
                    open(std::move(child));
                }
                continue;
            }
            Value done = std::move(current.value);
            done.addUnlessEmpty("children", std::move(current.children));
            open_.pop_back();
            if (open_.empty()) {
                return {std::move(done), std::move(deviceFiles_)};
            }
            open_.back().children.add(std::move(done));
        }
    }

private:
    struct OpenEntry
    {
        IoEntry entry;
        IoIterator below;
        Value value;
        Value children;
    };

    static bool belongsBelow(const IoEntry& child, const IoEntry& parent)
    {
        const IoEntry firstParent = child.parent();
        return !firstParent || registryEntryId(firstParent) == registryEntryId(parent);
    }

    void open(IoEntry entry)
    {
        Value value = Value::dictionary();
        value.add("name", Value::text(recordedName(entry)));
        Value recordedProperties = Value::dictionary();
        if (const auto properties = entry.properties()) {
            recordedProperties = recordedDictionary(properties.get(), 1);
            addDeviceFile(properties.get());
        }
        value.addUnlessEmpty("classes", classes_.of(entry, recordedProperties));
        value.addUnlessEmpty("properties", std::move(recordedProperties));
        io_iterator_t below = 0;
        if (IORegistryEntryGetChildIterator(entry.get(), kIOServicePlane, &below) != KERN_SUCCESS) {
            below = 0;
        }
        open_.push_back({std::move(entry), IoIterator(below), std::move(value), Value::array()});
    }

    void addDeviceFile(CFDictionaryRef properties)
    {
        const PropertyValue device = valueIn(properties, "IOCalloutDevice");
        if (device.string() == nullptr) {
            return;
        }
        const QString path = fastString(device.string());
        if (!askedFiles_.contains(path) && deviceFileExists(path)) {
            deviceFiles_.add(Value::text(xmlText(path.toUtf8())));
        }
        askedFiles_.insert(path);
    }

    std::vector<OpenEntry> open_;
    Classes classes_;
    Value deviceFiles_ = Value::array();
    QSet<QString> askedFiles_;
};

} // namespace

QByteArray recordedText(CFStringRef string)
{
    const auto text = utf8Of(string);
    return xmlText(text ? text->c_str() : CFStringGetCStringPtr(string, kCFStringEncodingMacRoman));
}

RegistryRecording recordRegistry()
{
    IoEntry root(IORegistryGetRootEntry(kIOMasterPortDefault));
    return root ? RegistryWalk().record(std::move(root))
                : RegistryRecording{Value::dictionary(), Value::array()};
}

} // namespace norvex::Tool

NORVEX_DEPRECATED_CALLS_END
