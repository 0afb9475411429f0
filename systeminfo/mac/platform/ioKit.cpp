#include "systeminfo/mac/platform/ioKit.h"

#include "systeminfo/mac/platform/failureInjection.h"
#include "systeminfo/mac/platform/handles.h"
#include "systeminfo/mac/platform/machine.h"

#include <cstring>
#include <memory>
#include <string>

using norvex::callFails;
using norvex::currentMachine;
using norvex::EntryIterator;
using norvex::EntryPlace;
using norvex::handOut;
using norvex::handOutShared;
using norvex::placeOf;
using norvex::RegistryEntry;
using norvex::RegistryPtr;

namespace {

constexpr kern_return_t success = KERN_SUCCESS;
constexpr auto generalError = kern_return_t(0xe00002bc); // kIOReturnError
constexpr auto badArgument = kern_return_t(0xe00002c2);  // kIOReturnBadArgument
constexpr auto noDevice = kern_return_t(0xe00002c0);     // kIOReturnNoDevice

// Some non-zero port name: the layer has one registry and tells no ports apart.
constexpr mach_port_t mainPort = 0x103;

struct Releaser
{
    void operator()(CFDictionaryRef dictionary) const { CFRelease(dictionary); }
};

// Consumes a matching dictionary; the class that it asks for, empty for null.
std::string takeClassName(CFDictionaryRef matching)
{
    const std::unique_ptr<const __CFDictionary, Releaser> consumed(matching);
    const CFTypeRef value = matching == nullptr ? nullptr : matching->value(CFSTR("IOProviderClass"));
    return value == nullptr ? std::string() : static_cast<CFStringRef>(value)->utf8;
}

// The same entry with everything below it: of a part of the registry the root lacks descendants.
EntryPlace withDescendants(const EntryPlace& place)
{
    const bool isPartialRoot = place.index == 0 && place.registry->isPart();
    RegistryPtr whole = isPartialRoot ? currentMachine()->registry(QByteArray()) : place.registry;
    return whole == nullptr || whole->size() == 0 ? place : EntryPlace{std::move(whole), place.index};
}

CFTypeRef propertyOf(const RegistryEntry& entry, CFStringRef key)
{
    return entry.properties ? entry.properties.get()->value(key) : nullptr;
}

} // namespace

extern "C" {

const mach_port_t kIOMasterPortDefault = MACH_PORT_NULL;

kern_return_t IOMasterPort(mach_port_t, mach_port_t* masterPort)
{
    const kern_return_t result = callFails() ? generalError : currentMachine()->faults().masterPort;
    if (result == success) {
        *masterPort = mainPort;
    }
    return result;
}

kern_return_t IOObjectRetain(io_object_t object)
{
    return norvex::retainHandle(object) ? success : badArgument;
}

kern_return_t IOObjectRelease(io_object_t object)
{
    return norvex::releaseHandle(object) ? success : badArgument;
}

boolean_t IOObjectConformsTo(io_object_t object, const io_name_t className)
{
    const auto place = placeOf(object);
    return !callFails() && place && place->registry->conformsTo(place->index, className);
}

CFStringRef IOObjectCopyClass(io_object_t object)
{
    const auto place = placeOf(object);
    if (callFails() || !place || (place->entry().faults && place->entry().faults->copyClass)) {
        return nullptr;
    }
    const auto& chain = place->registry->classesOf(place->index);
    return chain.empty() ? nullptr : handOut(norvex::makeString(chain.front()).take());
}

CFStringRef IOObjectCopySuperclassForClass(CFStringRef classname)
{
    const QByteArray name = currentMachine()->superclassOf(QByteArray::fromStdString(classname->utf8));
    return callFails() || name.isEmpty() ? nullptr : handOut(norvex::makeString(name.toStdString()).take());
}

io_object_t IOIteratorNext(io_iterator_t iterator)
{
    if (callFails()) {
        return IO_OBJECT_NULL;
    }
    auto place = norvex::nextPlace(iterator);
    return place ? norvex::openHandle(std::move(*place)) : IO_OBJECT_NULL;
}

CFMutableDictionaryRef IOServiceMatching(const char* name)
{
    const auto machine = currentMachine();
    if (callFails() || machine->faults().matching.count(std::string_view(name)) > 0) {
        return nullptr;
    }
    norvex::DictionaryBuilder matching;
    matching.set("IOProviderClass", norvex::makeString(name));
    return const_cast<CFMutableDictionaryRef>(handOut(matching.finish().take()));
}

io_service_t IOServiceGetMatchingService(mach_port_t, CFDictionaryRef matching)
{
    const std::string className = takeClassName(matching);
    if (callFails() || className.empty()) {
        return IO_OBJECT_NULL;
    }
    auto place = EntryIterator(currentMachine()->registry(className.c_str()), className).next();
    return place ? norvex::openHandle(std::move(*place)) : IO_OBJECT_NULL;
}

kern_return_t IOServiceGetMatchingServices(mach_port_t, CFDictionaryRef matching, io_iterator_t* existing)
{
    const std::string className = takeClassName(matching);
    if (className.empty()) {
        return badArgument;
    }
    const auto machine = currentMachine();
    const auto& faults = machine->faults().services;
    const auto fault = faults.find(className);
    if (fault != faults.end() && fault->second != success) {
        return fault->second;
    }
    if (callFails()) {
        return generalError;
    }
    *existing = norvex::openHandle(EntryIterator(machine->registry(className.c_str()), className));
    return success;
}

io_registry_entry_t IORegistryGetRootEntry(mach_port_t)
{
    RegistryPtr registry = callFails() ? nullptr : currentMachine()->root();
    if (registry == nullptr || registry->size() == 0) {
        return IO_OBJECT_NULL;
    }
    return norvex::openHandle(EntryPlace{std::move(registry), 0});
}

kern_return_t IORegistryEntryGetRegistryEntryID(io_registry_entry_t entry, std::uint64_t* entryID)
{
    const auto place = placeOf(entry);
    if (!place) {
        return badArgument;
    }
    if (callFails()) {
        return generalError;
    }
    *entryID = std::uint64_t(place->index) + 1;
    return success;
}

kern_return_t IORegistryEntryGetName(io_registry_entry_t entry, io_name_t name)
{
    const auto place = placeOf(entry);
    if (!place) {
        return badArgument;
    }
    if (callFails()) {
        return generalError;
    }
    if (place->entry().faults && place->entry().faults->getName != success) {
        return place->entry().faults->getName;
    }
    const std::string& text = place->entry().name;
    const std::size_t length = std::min(text.size(), sizeof(io_name_t) - 1);
    std::memcpy(name, text.data(), length);
    name[length] = 0;
    return success;
}

kern_return_t IORegistryEntryCreateCFProperties(io_registry_entry_t entry, CFMutableDictionaryRef* properties,
                                                CFAllocatorRef, IOOptionBits)
{
    const auto place = placeOf(entry);
    if (!place) {
        return badArgument;
    }
    if (callFails()) {
        return generalError;
    }
    if (place->entry().faults && place->entry().faults->createProperties != success) {
        return place->entry().faults->createProperties;
    }
    const CFDictionaryRef stored = place->entry().properties.get();
    const CFDictionaryRef answer =
        stored != nullptr ? handOutShared(stored) : handOut(norvex::DictionaryBuilder().finish().take());
    *properties = const_cast<CFMutableDictionaryRef>(answer);
    return success;
}

CFTypeRef IORegistryEntryCreateCFProperty(io_registry_entry_t entry, CFStringRef key, CFAllocatorRef,
                                          IOOptionBits)
{
    const auto place = placeOf(entry);
    return callFails() || !place ? nullptr : handOutShared(propertyOf(place->entry(), key));
}

CFTypeRef IORegistryEntrySearchCFProperty(io_registry_entry_t entry, const io_name_t, CFStringRef key,
                                          CFAllocatorRef, IOOptionBits options)
{
    const auto start = placeOf(entry);
    if (callFails() || !start) {
        return nullptr;
    }
    const bool isRecursive = (options & kIORegistryIterateRecursively) != 0;
    const EntryPlace place = isRecursive ? withDescendants(*start) : *start;
    const std::uint32_t end = isRecursive ? place.entry().end : place.index + 1;
    for (std::uint32_t index = place.index; index < end; ++index) {
        if (const CFTypeRef value = propertyOf(place.registry->entry(index), key)) {
            return handOutShared(value);
        }
    }
    return nullptr;
}

kern_return_t IORegistryEntryGetParentEntry(io_registry_entry_t entry, const io_name_t,
                                            io_registry_entry_t* parent)
{
    const auto place = placeOf(entry);
    if (!place) {
        return badArgument;
    }
    if (callFails()) {
        return generalError;
    }
    if (place->entry().faults && place->entry().faults->getParent != success) {
        return place->entry().faults->getParent;
    }
    if (place->entry().parent == RegistryEntry::none) {
        return noDevice;
    }
    *parent = norvex::openHandle(EntryPlace{place->registry, place->entry().parent});
    return success;
}

kern_return_t IORegistryEntryGetChildIterator(io_registry_entry_t entry, const io_name_t,
                                              io_iterator_t* iterator)
{
    const auto place = placeOf(entry);
    if (!place) {
        return badArgument;
    }
    if (callFails()) {
        return generalError;
    }
    *iterator = norvex::openHandle(EntryIterator(withDescendants(*place)));
    return success;
}

} // extern "C"
