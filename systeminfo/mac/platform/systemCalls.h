#pragma once

/// @file
/// The system calls and services beside CoreFoundation and IOKit that the library uses, for hosts that lack
/// them.

#include "systeminfo/mac/platform/coreFoundation.h"
#include "systeminfo/mac/platform/norvexPlatform.h"

#include <cstddef>
#include <cstdint>

typedef std::int32_t DNSServiceErrorType;
typedef OptionBits LSRolesMask;
struct FSRef;

#define kDNSServiceProperty_DaemonVersion "DaemonVersion"

enum : LSRolesMask { kLSRolesAll = 0xFFFFFFFF };

extern "C" {

OSErr Gestalt(OSType selector, SInt32* response);
int sysctlbyname(const char* name, void* oldp, std::size_t* oldlenp, void* newp, std::size_t newlen);
DNSServiceErrorType DNSServiceGetProperty(const char* property, void* result, std::uint32_t* size);
OSStatus LSGetApplicationForURL(CFURLRef inURL, LSRolesMask inRoleMask, FSRef* outAppRef,
                                CFURLRef* outAppURL);

} // extern "C"

namespace norvex {

/// The names that `pathconf` has on macOS and the host's C library lacks.
enum PathconfName : int { _PC_CASE_SENSITIVE = 11, _PC_CASE_PRESERVING = 12 };

// Overloads on the layer's own types, beside the functions of the host's C library.
int statfs(const char* path, MacStatfs* record);
long pathconf(const char* path, PathconfName name);

} // namespace norvex
