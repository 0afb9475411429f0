#pragma once

/// @file
/// How many processors, cores and threads the host has.

#include "systeminfo/mac/platform/live/kernelFiles.h"

#include <QByteArray>

#include <cstdint>
#include <optional>

namespace norvex {

/// A path below the folder in which the kernel describes its CPUs. A CPU is what the kernel schedules on: a
/// hardware thread.
QByteArray cpuPath(const QByteArray& rest);

/// The cores of all processors that are on.
std::optional<std::int64_t> physicalCores(const KernelFiles& files);
/// The CPUs of all processors, whether on or off.
std::optional<std::int64_t> virtualCores(const KernelFiles& files);
/// The CPUs of one processor package. All packages of a machine are alike.
std::optional<std::int64_t> cpusInPackage(const KernelFiles& files);
/// The cores of one processor package.
std::optional<std::int64_t> coresInPackage(const KernelFiles& files);

} // namespace norvex
