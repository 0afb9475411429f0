#pragma once

/// @file
/// The sysctl names that have a value on this host.

#include "systeminfo/mac/platform/live/cpuid.h"
#include "systeminfo/mac/platform/live/kernelFiles.h"

#include <QByteArray>

#include <optional>

namespace norvex {

/// The bytes behind a sysctl name of the kernel, the machine's model or its processor; absent for other names, and
/// where neither CPUID nor the kernel tells the value.
std::optional<QByteArray> hostSysctl(const QByteArray& name, const Cpuid& cpuid, const KernelFiles& files);

} // namespace norvex
