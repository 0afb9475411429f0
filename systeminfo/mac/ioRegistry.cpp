#include "systeminfo/mac/ioRegistry.h"

#include <QtGlobal>

#include <cstring>

NORVEX_DEPRECATED_CALLS_BEGIN

namespace norvex::SystemInfo::MacSysInfo {

CFHolder<CFStringRef> makeKey(const char* key)
{
    return CFHolder<CFStringRef>(CFStringCreateWithCString(kCFAllocatorDefault, key, kCFStringEncodingUTF8));
}

std::optional<bool> PropertyValue::boolean() const
{
    const auto value = as<CFBooleanRef>(CFBooleanGetTypeID());
    return value == nullptr ? std::nullopt : std::make_optional(CFBooleanGetValue(value) != 0);
}

namespace {

template <typename Integer>
std::optional<Integer> storedInteger(CFNumberRef number, CFNumberType storedType)
{
    Integer value = 0;
    if (number == nullptr || CFNumberGetType(number) != storedType ||
        !CFNumberGetValue(number, storedType, &value)) {
        return std::nullopt;
    }
    return value;
}

} // namespace

std::optional<std::int32_t> PropertyValue::int32() const
{
    return storedInteger<std::int32_t>(number(), kCFNumberSInt32Type);
}

std::optional<std::int64_t> PropertyValue::int64() const
{
    return storedInteger<std::int64_t>(number(), kCFNumberSInt64Type);
}

PropertyValue valueIn(CFDictionaryRef dictionary, const char* key)
{
    const auto name = makeKey(key);
    if (dictionary == nullptr || !name) {
        return PropertyValue();
    }
    const CFTypeRef value = CFDictionaryGetValue(dictionary, name.get());
    return PropertyValue(value == nullptr ? nullptr : CFRetain(value));
}

QByteArray bytesOf(CFDataRef data)
{
    return QByteArray(reinterpret_cast<const char*>(CFDataGetBytePtr(data)), int(CFDataGetLength(data)));
}

std::optional<std::string> utf8Of(CFStringRef string)
{
    const CFIndex size =
        CFStringGetMaximumSizeForEncoding(CFStringGetLength(string), kCFStringEncodingUTF8) + 1;
    std::string text(static_cast<std::size_t>(size), '\0');
    if (!CFStringGetCString(string, text.data(), size, kCFStringEncodingUTF8)) {
        return std::nullopt;
    }
    text.resize(std::strlen(text.c_str()));
    return text;
}

QString fastString(CFStringRef string)
{
    return string == nullptr ? QString()
                             : QString::fromUtf8(CFStringGetCStringPtr(string, kCFStringEncodingMacRoman));
}

CFHolder<CFDictionaryRef> IoEntry::properties() const
{
    CFMutableDictionaryRef dictionary = nullptr;
    if (IORegistryEntryCreateCFProperties(get(), &dictionary, kCFAllocatorDefault, 0) != KERN_SUCCESS) {
        dictionary = nullptr;
    }
    return CFHolder<CFDictionaryRef>(dictionary);
}

PropertyValue IoEntry::property(const char* key) const
{
    const auto name = makeKey(key);
    if (!name) {
        return PropertyValue();
    }
    return PropertyValue(IORegistryEntryCreateCFProperty(get(), name.get(), kCFAllocatorDefault, 0));
}

PropertyValue IoEntry::search(const char* key) const
{
    const auto name = makeKey(key);
    if (!name) {
        return PropertyValue();
    }
    return PropertyValue(IORegistryEntrySearchCFProperty(get(), kIOServicePlane, name.get(), nullptr,
                                                         kIORegistryIterateRecursively));
}

IoEntry IoEntry::parent() const
{
    io_registry_entry_t parent = 0;
    if (IORegistryEntryGetParentEntry(get(), kIOServicePlane, &parent) != KERN_SUCCESS) {
        parent = 0;
    }
    return IoEntry(parent);
}

bool IoEntry::conformsTo(const char* className) const
{
    return IOObjectConformsTo(get(), className) != 0;
}

CFHolder<CFStringRef> IoEntry::className() const
{
    return CFHolder<CFStringRef>(IOObjectCopyClass(get()));
}

IoIterator servicesOfClass(RegistryClass registryClass)
{
    const char* const className = nameOf(registryClass);
    const CFMutableDictionaryRef matching = IOServiceMatching(className);
    if (matching == nullptr) {
        qWarning("IOServiceMatching for %s failed", className);
        return IoIterator();
    }
    io_iterator_t iterator = 0;
    const kern_return_t result = IOServiceGetMatchingServices(kIOMasterPortDefault, matching, &iterator);
    if (result != KERN_SUCCESS) {
        qWarning("IOServiceGetMatchingServices returned %d\n", result);
        return IoIterator();
    }
    return IoIterator(iterator);
}

IoEntry firstServiceOfClass(RegistryClass registryClass)
{
    const CFMutableDictionaryRef matching = IOServiceMatching(nameOf(registryClass));
    return IoEntry(matching == nullptr ? 0 : IOServiceGetMatchingService(kIOMasterPortDefault, matching));
}

int openServiceIterator(RegistryClass registryClass, unsigned int* iterator)
{
    mach_port_t port = MACH_PORT_NULL;
    kern_return_t result = IOMasterPort(MACH_PORT_NULL, &port);
    if (result != KERN_SUCCESS) {
        qWarning("IOMasterPort returned %d\n", result);
        return result;
    }
    const CFMutableDictionaryRef matching = IOServiceMatching(nameOf(registryClass));
    if (matching == nullptr) {
        qWarning("IOServiceMatching returned a NULL dictionary.\n");
        return KERN_FAILURE;
    }
    result = IOServiceGetMatchingServices(port, matching, iterator);
    if (result != KERN_SUCCESS) {
        qWarning("IOServiceGetMatchingServices returned %d\n", result);
    }
    return result;
}

IoIterator iteratorFrom(int (*function)(unsigned int* iterator), const char* name)
{
    io_iterator_t iterator = 0;
    const int result = function(&iterator);
    if (result != KERN_SUCCESS) {
        qWarning("%s returned 0x%08x\n", name, static_cast<unsigned int>(result));
        return IoIterator();
    }
    return IoIterator(iterator);
}

} // namespace norvex::SystemInfo::MacSysInfo

NORVEX_DEPRECATED_CALLS_END
