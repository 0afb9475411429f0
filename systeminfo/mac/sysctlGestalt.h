#pragma once

/// @file
/// sysctl and Gestalt values of a kind, or nothing when the query fails.

#include "systeminfo/mac/frameworks.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace norvex::SystemInfo::MacSysInfo {

/// A 32-bit integer of sysctl; a value that is wider fails.
std::optional<std::int32_t> sysctlInt32(const char* name);
/// A 64-bit integer of sysctl; a narrower value is filled up with zeros.
std::optional<std::uint64_t> sysctlUInt64(const char* name);
/// A text of sysctl of at most 511 bytes, as UTF-8.
std::optional<QString> sysctlText(const char* name);
/// When the machine was started, in seconds since 1970.
std::optional<time_t> bootTime();

/// A Gestalt selector from its four characters.
constexpr OSType gestaltSelector(const char (&code)[5])
{
    return (OSType(code[0]) << 24) | (OSType(code[1]) << 16) | (OSType(code[2]) << 8) | OSType(code[3]);
}

std::optional<std::int32_t> gestaltValue(OSType selector);

} // namespace norvex::SystemInfo::MacSysInfo
