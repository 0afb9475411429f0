#pragma once

/// @file
/// IOKit's registry functions for systems that lack them, declared as in the framework's own headers.

#include "systeminfo/mac/platform/coreFoundation.h"

typedef int kern_return_t;
typedef unsigned int mach_port_t;
typedef unsigned int boolean_t;

typedef char io_name_t[128];
typedef mach_port_t io_object_t;
typedef io_object_t io_iterator_t;
typedef io_object_t io_registry_entry_t;
typedef io_object_t io_service_t;
typedef UInt32 IOOptionBits;

#define KERN_SUCCESS 0
#define KERN_FAILURE 5
#define MACH_PORT_NULL 0
#define IO_OBJECT_NULL ((io_object_t)0)
#define kIOServicePlane "IOService"

enum : IOOptionBits { kIORegistryIterateRecursively = 0x00000001 };

extern "C" {

extern const mach_port_t kIOMasterPortDefault;

kern_return_t IOMasterPort(mach_port_t bootstrapPort, mach_port_t* masterPort);

kern_return_t IOObjectRetain(io_object_t object);
kern_return_t IOObjectRelease(io_object_t object);
boolean_t IOObjectConformsTo(io_object_t object, const io_name_t className);
CFStringRef IOObjectCopyClass(io_object_t object);
CFStringRef IOObjectCopySuperclassForClass(CFStringRef classname);
io_object_t IOIteratorNext(io_iterator_t iterator);

CFMutableDictionaryRef IOServiceMatching(const char* name);
/// Consumes the dictionary.
io_service_t IOServiceGetMatchingService(mach_port_t masterPort, CFDictionaryRef matching);
/// Consumes the dictionary.
kern_return_t IOServiceGetMatchingServices(mach_port_t masterPort, CFDictionaryRef matching,
                                           io_iterator_t* existing);

io_registry_entry_t IORegistryGetRootEntry(mach_port_t masterPort);
kern_return_t IORegistryEntryGetRegistryEntryID(io_registry_entry_t entry, std::uint64_t* entryID);
kern_return_t IORegistryEntryGetName(io_registry_entry_t entry, io_name_t name);
kern_return_t IORegistryEntryCreateCFProperties(io_registry_entry_t entry, CFMutableDictionaryRef* properties,
                                                CFAllocatorRef allocator, IOOptionBits options);
CFTypeRef IORegistryEntryCreateCFProperty(io_registry_entry_t entry, CFStringRef key,
                                          CFAllocatorRef allocator, IOOptionBits options);
CFTypeRef IORegistryEntrySearchCFProperty(io_registry_entry_t entry, const io_name_t plane, CFStringRef key,
                                          CFAllocatorRef allocator, IOOptionBits options);
kern_return_t IORegistryEntryGetParentEntry(io_registry_entry_t entry, const io_name_t plane,
                                            io_registry_entry_t* parent);
kern_return_t IORegistryEntryGetChildIterator(io_registry_entry_t entry, const io_name_t plane,
                                              io_iterator_t* iterator);

} // extern "C"
