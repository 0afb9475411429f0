#pragma once

/// @file
/// The numbers that the Mach kernel has for processors.

#include "systeminfo/mac/platform/live/cpuid.h"

#include <cstdint>
#include <optional>

namespace norvex {

/// The CPU type of the architecture that the library was compiled for. As on a Mac, the type of an Intel processor
/// never has the flag for 64 bits; the types of other 64-bit processors have it.
std::optional<std::int64_t> machCpuType();

/// The CPU subtype; absent for a processor that no Mac was built with.
std::optional<std::int64_t> machCpuSubtype(const Cpuid& cpuid);
/// The CPU family; absent for a processor that no Mac was built with.
std::optional<std::int64_t> machCpuFamily(const Cpuid& cpuid);

} // namespace norvex
