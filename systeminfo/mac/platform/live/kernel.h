#pragma once

/// @file
/// What the Linux kernel says about itself, the machine and its memory.

#include "systeminfo/mac/platform/live/kernelFiles.h"

#include <QByteArray>

#include <array>
#include <cstdint>
#include <optional>

namespace norvex {

/// The first three numbers of a kernel release such as "6.1.0-13-amd64"; missing numbers are 0.
/// @return absent for a text that does not begin with a number
std::optional<std::array<std::int32_t, 3>> kernelRelease(const QByteArray& release);

/// Which build of its release the running kernel is.
QByteArray kernelBuild();
/// The running kernel in one line: its release, its builder, its compiler and its build.
std::optional<QByteArray> kernelVersion(const KernelFiles& files);
/// When the kernel started, in seconds since 1970 in UTC.
std::optional<std::int64_t> bootTime(const KernelFiles& files);

/// The kernel's name for the machine's architecture.
QByteArray machineHardware();
/// The machine's model as its firmware names it.
std::optional<QByteArray> machineModel(const KernelFiles& files);

/// The value of a Gestalt selector for the kernel's release, the processor's architecture or the memory; absent for
/// selectors that have no true equivalent on this host.
std::optional<std::int32_t> kernelGestalt(std::uint32_t selector, const KernelFiles& files);

} // namespace norvex
