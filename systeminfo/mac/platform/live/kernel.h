#pragma once

/// @file
/// What a Mac says of its system, model and memory, on a host with a Linux kernel.

#include "systeminfo/mac/platform/live/kernelFiles.h"

#include <QByteArray>

#include <array>
#include <cstdint>
#include <optional>

namespace norvex {

/// The first three numbers of a kernel release such as "6.1.0-13-amd64"; those that it leaves out are 0.
/// Absent for a text that does not begin with a number.
std::optional<std::array<std::int32_t, 3>> kernelRelease(const QByteArray& release);

/// The bytes behind the sysctl names of the kernel and the machine's model; absent for other names.
std::optional<QByteArray> kernelSysctl(const QByteArray& name, const KernelFiles& files);

/// The value behind a Gestalt selector: the release of the running kernel, the processor's architecture,
/// memory. Absent for selectors without a true equivalent on this host.
std::optional<std::int32_t> kernelGestalt(std::uint32_t selector, const KernelFiles& files);

} // namespace norvex
