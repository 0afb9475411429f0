#pragma once

/// @file
/// Values of `sysctlbyname` and `Gestalt`; nothing when the query fails.

#include "systeminfo/mac/frameworks.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace norvex::SystemInfo::MacSysInfo {

/// A 32-bit integer of `sysctlbyname`; the query of a wider value fails.
std::optional<std::int32_t> sysctlInt32(const char* name);
/// A 64-bit integer of `sysctlbyname`; a narrower value is extended with zeros.
std::optional<std::uint64_t> sysctlUInt64(const char* name);
/// A UTF-8 text of `sysctlbyname`; the query of a text of more than 511 bytes fails.
std::optional<QString> sysctlText(const char* name);
/// When the machine started, in seconds since 1970 (`sysctlbyname`, "kern.boottime").
std::optional<time_t> bootTime();

/// A Gestalt selector from its four characters.
constexpr OSType gestaltSelector(const char (&code)[5])
{
    return (OSType(code[0]) << 24) | (OSType(code[1]) << 16) | (OSType(code[2]) << 8) | OSType(code[3]);
}

/// The value of `Gestalt` for a selector.
std::optional<std::int32_t> gestaltValue(OSType selector);

} // namespace norvex::SystemInfo::MacSysInfo
