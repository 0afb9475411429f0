#pragma once

/// @file
/// The names of Mach's processor types, sub-types and families.

#include <QString>

#include <cstdint>
#include <optional>

namespace norvex::SystemInfo::MacSysInfo {

constexpr std::uint32_t cpuTypeX86 = 7;
/// The family whose name depends on the model, see penrynFamilyName().
constexpr std::uint32_t cpuFamilyPenryn = 0x78ea4fbc;

/// The name of a type without its flags, followed by a blank; "unknown", without a blank, for any other type.
QString cpuTypeName(std::uint32_t type);

/// The name of a sub-type.
/// @param hasFamily whether the machine has a Mach family for its processor. On such machines the sub-types of x86 have
///        another meaning.
QString cpuSubTypeName(std::uint32_t type, std::int32_t subType, bool hasFamily);

/// The name of a family; "unknown" for a family that is not in the table.
QString cpuFamilyName(std::uint32_t family);

/// The name of cpuFamilyPenryn for a processor model; the model is absent when its query fails.
QString penrynFamilyName(std::optional<std::int32_t> model);

} // namespace norvex::SystemInfo::MacSysInfo
