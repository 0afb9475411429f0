#pragma once

/// @file
/// What a Mac's hw.* and machdep.cpu.* values are on the host's processor.

#include "systeminfo/mac/platform/live/kernelFiles.h"

#include <QByteArray>

#include <cstdint>
#include <functional>
#include <optional>

namespace norvex {

struct CpuidRegisters
{
    std::uint32_t eax = 0;
    std::uint32_t ebx = 0;
    std::uint32_t ecx = 0;
    std::uint32_t edx = 0;
};

/// The CPUID instruction for a leaf (and subleaf 0), called only for leaves that the processor has; empty on
/// a processor without it.
using Cpuid = std::function<CpuidRegisters(std::uint32_t leaf)>;

/// The instruction of the processor that the calling thread runs on.
Cpuid hostCpuid();

/// The bytes behind a sysctl name that describes the processor; absent for other names, and where neither
/// CPUID nor the host's files know the fact.
std::optional<QByteArray> processorSysctl(const QByteArray& name, const Cpuid& cpuid,
                                          const KernelFiles& files);

} // namespace norvex
