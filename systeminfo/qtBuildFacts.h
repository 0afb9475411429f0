#pragma once

#include <QtGlobal>

/// @file
/// What the report says of the build itself; the one place that knows the target.

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

} // namespace norvex::SystemInfo::Internal
