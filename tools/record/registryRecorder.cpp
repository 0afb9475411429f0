#include "tools/record/registryRecorder.h"

#include "tools/record/recordingWriter.h"

#include "systeminfo/mac/fileQueries.h"
#include "systeminfo/mac/ioRegistry.h"

#include <QSet>

#include <algorithm>
#include <unordered_map>

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

// Sorted by key: a dictionary has no order of its own.
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

// Nothing for what a recording cannot hold: dates, sets, values that nest too deep.
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

// The system may cut a name inside a character. This completes it with some character that the system cuts to the same
// bytes.
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

using ClassChain = std::vector<QByteArray>; // a class, then its superclasses

bool contains(const ClassChain& chain, const QByteArray& className)
{
    return std::find(chain.begin(), chain.end(), className) != chain.end();
}

// The superclasses of the entries' classes; it looks up each class once.
class Classes
{
public:
    Value of(const IoEntry& entry)
    {
        Value result = Value::array();
        if (const auto className = entry.className()) {
            for (const QByteArray& name : corrected(chainFrom(className.get()), entry)) {
                result.add(Value::text(name));
            }
        }
        return result;
    }

private:
    const ClassChain& chainFrom(CFStringRef className)
    {
        const QByteArray name = recordedText(className);
        const auto known = chains_.find(name.toStdString());
        if (known != chains_.end()) {
            return known->second;
        }
        ClassChain chain = {name};
        CFHolder<CFStringRef> superclass(IOObjectCopySuperclassForClass(className));
        while (superclass && !contains(chain, recordedText(superclass.get()))) {
            chain.push_back(recordedText(superclass.get()));
            superclass = CFHolder<CFStringRef>(IOObjectCopySuperclassForClass(superclass.get()));
        }
        return chains_.emplace(name.toStdString(), std::move(chain)).first->second;
    }

    // An entry can pass for a class that its own class does not inherit, or the reverse. For the classes that sections
    // look for, the entry itself answers.
    ClassChain corrected(ClassChain chain, const IoEntry& entry)
    {
        static const char* const lookedFor[] = {
            "IOPlatformExpertDevice", "AppleAHCIDiskDriver", "IOAHCISerialATAPI",
            "IONVMeController",       "IOEthernetInterface", "IO80211Interface",
            "AppleUSBEthernet",       "IOPCIDevice",         "IOUSBDevice",
            "IOSerialBSDClient"};
        std::vector<const char*> conforming;
        for (const char* className : lookedFor) {
            if (entry.conformsTo(className)) {
                conforming.push_back(className);
            } else {
                chain.erase(std::find(chain.begin(), chain.end(), className), chain.end());
            }
        }
        for (const char* className : conforming) {
            const auto missing = contains(chain, className) ? CFHolder<CFStringRef>() : makeKey(className);
            for (const QByteArray& name : missing ? chainFrom(missing.get()) : ClassChain()) {
                if (!contains(chain, name)) {
                    chain.push_back(name);
                }
            }
        }
        return chain;
    }

    std::unordered_map<std::string, ClassChain> chains_;
};

std::uint64_t registryEntryId(const IoEntry& entry)
{
    std::uint64_t identity = 0;
    return IORegistryEntryGetRegistryEntryID(entry.get(), &identity) == KERN_SUCCESS ? identity : 0;
}

// Walks the registry depth first, with its own stack.
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
        value.addUnlessEmpty("classes", classes_.of(entry));
        if (const auto properties = entry.properties()) {
            value.addUnlessEmpty("properties", recordedDictionary(properties.get(), 1));
            addDeviceFile(properties.get());
        }
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
    const CFIndex size =
        CFStringGetMaximumSizeForEncoding(CFStringGetLength(string), kCFStringEncodingUTF8) + 1;
    QByteArray buffer(int(size), '\0');
    if (CFStringGetCString(string, buffer.data(), size, kCFStringEncodingUTF8)) {
        return xmlText(buffer.constData());
    }
    return xmlText(CFStringGetCStringPtr(string, kCFStringEncodingMacRoman));
}

RegistryRecording recordRegistry()
{
    IoEntry root(IORegistryGetRootEntry(kIOMasterPortDefault));
    return root ? RegistryWalk().record(std::move(root))
                : RegistryRecording{Value::dictionary(), Value::array()};
}

} // namespace norvex::Tool

NORVEX_DEPRECATED_CALLS_END
