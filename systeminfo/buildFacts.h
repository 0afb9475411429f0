#pragma once

#include <QtGlobal>

/// @file
/// What the report says of this build. Nothing else asks which system or processor it is compiled for.

namespace norvex::SystemInfo::Internal {

#if defined(Q_OS_MAC)
constexpr char platformLine[] = "Qt Mac Cocoa based version.";
#elif defined(Q_OS_LINUX)
constexpr char platformLine[] = "Qt Linux based version.";
#else
constexpr char platformLine[] = "Qt Unix based version.";
#endif

constexpr const char* byteOrderName =
    QSysInfo::ByteOrder == QSysInfo::LittleEndian ? "Little Endian" : "Big Endian";

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

} // namespace norvex::SystemInfo::Internal
