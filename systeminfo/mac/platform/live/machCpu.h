#pragma once

/// @file
/// The numbers by which the Mach kernel knows processors.

#include "systeminfo/mac/platform/live/cpuid.h"

#include <cstdint>
#include <optional>

namespace norvex {

/// The CPU type of the architecture that this was compiled for. As on a Mac, that of an Intel processor lacks the
/// flag for 64 bits, and the others have it.
std::optional<std::int64_t> machCpuType();

/// The CPU subtype; absent for a processor that no Mac was built with.
std::optional<std::int64_t> machCpuSubtype(const Cpuid& cpuid);
/// The CPU family; absent for a processor that no Mac was built with.
std::optional<std::int64_t> machCpuFamily(const Cpuid& cpuid);

} // namespace norvex
