#pragma once

/// @file
/// The names of Mach's processor types, sub-types and families.

#include <QString>

#include <cstdint>
#include <optional>

namespace norvex::SystemInfo::MacSysInfo {

constexpr std::uint32_t cpuTypeX86 = 7;
constexpr std::uint32_t cpuFamilyPenryn = 0x78ea4fbc; ///< its name depends on the model: penrynFamilyName()

/// The name of a type without its flags, with a blank behind it; "unknown", without one, for any other type.
QString cpuTypeName(std::uint32_t type);

/// The name of a sub-type.
/// @param hasFamily whether the machine tells a processor family; the sub-types of x86 have changed their
/// meaning
///        since then
QString cpuSubTypeName(std::uint32_t type, std::int32_t subType, bool hasFamily);

/// The name of a family, "unknown" for any that is not in the table.
QString cpuFamilyName(std::uint32_t family);

/// The name of family cpuFamilyPenryn by the processor's model, if that is known.
QString penrynFamilyName(std::optional<std::int32_t> model);

} // namespace norvex::SystemInfo::MacSysInfo
