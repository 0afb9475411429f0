#pragma once

/// @file
/// The host's processor: its microcode, clocks and caches.

#include "systeminfo/mac/platform/live/cpuid.h"
#include "systeminfo/mac/platform/live/kernelFiles.h"

#include <cstdint>
#include <optional>

namespace norvex {

/// The revision of the first processor's microcode; absent when a hypervisor hides it.
std::optional<std::int64_t> microcodeRevision(const KernelFiles& files);

/// The highest clock of the cores, in hertz.
std::optional<std::int64_t> highestClock(const Cpuid& cpuid, const KernelFiles& files);
/// The clock of the bus, in hertz.
std::optional<std::int64_t> busClock(const Cpuid& cpuid);

enum class Cache { Level1Data, Level1Instructions, Level2, Level3 };

/// The size of a cache of the first processor, in bytes.
std::optional<std::int64_t> cacheSize(Cache cache, const KernelFiles& files);

} // namespace norvex
