#pragma once

/// @file
/// The functions of libSystem, macOS's C library, that other C libraries lack or have in another form: sysctl, DNS
/// Service Discovery, `statfs` and `pathconf`.

#include "systeminfo/mac/platform/norvexPlatform.h"

#include <cstddef>
#include <cstdint>

typedef std::int32_t DNSServiceErrorType;

#define kDNSServiceProperty_DaemonVersion "DaemonVersion"

extern "C" {

int sysctlbyname(const char* name, void* oldp, std::size_t* oldlenp, void* newp, std::size_t newlen);
DNSServiceErrorType DNSServiceGetProperty(const char* property, void* result, std::uint32_t* size);

} // extern "C"

namespace norvex {

/// The values that `pathconf` takes on macOS and the host's C library lacks.
enum PathconfName : int { _PC_CASE_SENSITIVE = 11, _PC_CASE_PRESERVING = 12 };

/// Overloads for the layer's own types, beside the functions of the host's C library.
int statfs(const char* path, MacStatfs* record);
long pathconf(const char* path, PathconfName name);

} // namespace norvex
