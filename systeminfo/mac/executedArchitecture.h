#pragma once

/// @file
/// The architecture that this library was compiled for, as the report names it.

#include <QtGlobal>

namespace norvex::SystemInfo::MacSysInfo {

#if defined(Q_PROCESSOR_X86_64)
constexpr char executedArchitecture[] = "Intel (64bit mode)";
#elif defined(Q_PROCESSOR_X86)
constexpr char executedArchitecture[] = "Intel (32bit mode)";
#elif defined(Q_PROCESSOR_ARM) && defined(__LP64__)
constexpr char executedArchitecture[] = "ARM (64bit mode)";
#elif defined(Q_PROCESSOR_ARM)
constexpr char executedArchitecture[] = "ARM (32bit mode)";
#elif defined(Q_PROCESSOR_POWER)
constexpr char executedArchitecture[] = "PowerPC (64bit mode)";
#else
constexpr char executedArchitecture[] = "unknown";
#endif

} // namespace norvex::SystemInfo::MacSysInfo
