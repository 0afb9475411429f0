#include "systeminfo/mac/platform/ioKit.h"

#include "systeminfo/mac/platform/failureInjection.h"
#include "systeminfo/mac/platform/handles.h"
#include "systeminfo/mac/platform/machine.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <utility>

using norvex::callFails;
using norvex::currentMachine;
using norvex::EntryFaults;
using norvex::EntryIterator;
using norvex::entryOf;
using norvex::EntryReference;
using norvex::handOut;
using norvex::handOutShared;
using norvex::RegistryEntry;
using norvex::RegistryPtr;

namespace {

constexpr kern_return_t success = KERN_SUCCESS;
constexpr auto generalError = kern_return_t(0xe00002bc); // kIOReturnError
constexpr auto badArgument = kern_return_t(0xe00002c2);  // kIOReturnBadArgument
constexpr auto noDevice = kern_return_t(0xe00002c0);     // kIOReturnNoDevice

/// Any non-zero port name: the layer has one registry and ignores the port.
constexpr mach_port_t mainPort = 0x103;

struct Releaser
{
    void operator()(CFDictionaryRef dictionary) const { CFRelease(dictionary); }
};

/// Consumes a matching dictionary. Returns the class that it matches, empty for null.
std::string takeClassName(CFDictionaryRef matching)
{
    const std::unique_ptr<const __CFDictionary, Releaser> consumed(matching);
    const CFTypeRef value = matching == nullptr ? nullptr : matching->value(CFSTR("IOProviderClass"));
    return value == nullptr ? std::string() : static_cast<CFStringRef>(value)->utf8;
}

/// The same entry, in a registry that has all its descendants. The root of a partial registry lacks some, so the
/// machine is asked for the whole one.
EntryReference withDescendants(const EntryReference& reference)
{
    const bool isPartialRoot = reference.index == 0 && reference.registry->isPart();
    RegistryPtr whole = isPartialRoot ? currentMachine()->registry(QByteArray()) : reference.registry;
    return whole == nullptr || whole->size() == 0 ? reference
                                                  : EntryReference{std::move(whole), reference.index};
}

CFTypeRef propertyOf(const RegistryEntry& entry, CFStringRef key)
{
    return entry.properties ? entry.properties.get()->value(key) : nullptr;
}

/// The class that an entry names instead of its own by the property IOClassNameOverride; null for none. Faults of a
/// recording, in the property or in the call for all properties, do not hide it.
const std::string* overridingClassOf(const RegistryEntry& entry)
{
    const CFTypeRef value = propertyOf(entry, CFSTR("IOClassNameOverride"));
    if (value == nullptr || norvex::objectOf(value)->kind() != norvex::ObjectKind::String) {
        return nullptr;
    }
    const std::string& name = static_cast<CFStringRef>(value)->utf8;
    return name.size() < sizeof(io_name_t) ? &name : nullptr;
}

io_object_t openNext(std::optional<EntryReference> reference)
{
    return reference ? norvex::openHandle(std::move(*reference)) : IO_OBJECT_NULL;
}

/// Makes a call on the entry behind a handle, unless the handle is bad or the call has to fail.
/// @param fault where a recording keeps the result that makes the call fail; null for a call that it cannot make fail
template <typename Call>
kern_return_t onEntry(io_registry_entry_t handle, std::int32_t EntryFaults::*fault, Call call)
{
    const auto reference = entryOf(handle);
    if (!reference) {
        return badArgument;
    }
    if (callFails()) {
        return generalError;
    }
    const auto& faults = reference->entry().faults;
    if (fault != nullptr && faults && faults.get()->*fault != success) {
        return faults.get()->*fault;
    }
    return call(*reference);
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
    const auto reference = entryOf(object);
    if (callFails() || !reference) {
        return false;
    }
    const std::string* const overriding = overridingClassOf(reference->entry());
    return (overriding != nullptr && *overriding == className) ||
           reference->registry->conformsTo(reference->index, className);
}

CFStringRef IOObjectCopyClass(io_object_t object)
{
    const auto reference = entryOf(object);
    if (callFails() || !reference || (reference->entry().faults && reference->entry().faults->copyClass)) {
        return nullptr;
    }
    const auto& chain = reference->registry->classesOf(reference->index);
    const std::string* name = overridingClassOf(reference->entry());
    if (name == nullptr && !chain.empty()) {
        name = &chain.front();
    }
    return name == nullptr ? nullptr
                           : handOut(norvex::makeString(*name).take()); // a new string, without faults
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
    return openNext(norvex::nextEntry(iterator));
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
    return openNext(EntryIterator(currentMachine()->registry(className.c_str()), className).next());
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
    return norvex::openHandle(EntryReference{std::move(registry), 0});
}

kern_return_t IORegistryEntryGetRegistryEntryID(io_registry_entry_t entry, std::uint64_t* entryID)
{
    return onEntry(entry, nullptr, [entryID](const EntryReference& reference) {
        *entryID = reference.entry().id;
        return success;
    });
}

kern_return_t IORegistryEntryGetName(io_registry_entry_t entry, io_name_t name)
{
    return onEntry(entry, &EntryFaults::getName, [name](const EntryReference& reference) {
        const std::string& text = reference.entry().name;
        const std::size_t length = std::min(text.size(), sizeof(io_name_t) - 1);
        std::memcpy(name, text.data(), length);
        name[length] = 0;
        return success;
    });
}

kern_return_t IORegistryEntryCreateCFProperties(io_registry_entry_t entry, CFMutableDictionaryRef* properties,
                                                CFAllocatorRef, IOOptionBits)
{
    return onEntry(entry, &EntryFaults::createProperties, [properties](const EntryReference& reference) {
        const CFDictionaryRef stored = reference.entry().properties.get();
        const CFDictionaryRef result =
            stored != nullptr ? handOutShared(stored) : handOut(norvex::DictionaryBuilder().finish().take());
        *properties = const_cast<CFMutableDictionaryRef>(result);
        return success;
    });
}

CFTypeRef IORegistryEntryCreateCFProperty(io_registry_entry_t entry, CFStringRef key, CFAllocatorRef,
                                          IOOptionBits)
{
    const auto reference = entryOf(entry);
    return callFails() || !reference ? nullptr : handOutShared(propertyOf(reference->entry(), key));
}

CFTypeRef IORegistryEntrySearchCFProperty(io_registry_entry_t entry, const io_name_t, CFStringRef key,
                                          CFAllocatorRef, IOOptionBits options)
{
    const auto start = entryOf(entry);
    if (callFails() || !start) {
        return nullptr;
    }
    const bool isRecursive = (options & kIORegistryIterateRecursively) != 0;
    const EntryReference top = isRecursive ? withDescendants(*start) : *start;
    const std::uint32_t end = isRecursive ? top.entry().end : top.index + 1;
    for (std::uint32_t index = top.index; index < end; ++index) {
        if (const CFTypeRef value = propertyOf(top.registry->entry(index), key)) {
            return handOutShared(value);
        }
    }
    return nullptr;
}

kern_return_t IORegistryEntryGetParentEntry(io_registry_entry_t entry, const io_name_t,
                                            io_registry_entry_t* parent)
{
    return onEntry(entry, &EntryFaults::getParent, [parent](const EntryReference& reference) {
        if (reference.entry().parent == RegistryEntry::none) {
            return noDevice;
        }
        *parent = norvex::openHandle(EntryReference{reference.registry, reference.entry().parent});
        return success;
    });
}

kern_return_t IORegistryEntryGetChildIterator(io_registry_entry_t entry, const io_name_t,
                                              io_iterator_t* iterator)
{
    return onEntry(entry, nullptr, [iterator](const EntryReference& reference) {
        *iterator = norvex::openHandle(EntryIterator(withDescendants(reference)));
        return success;
    });
}

} // extern "C"
