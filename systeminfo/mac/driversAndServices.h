#pragma once

/// @file
/// The queries behind the checks of drivers and services, which the recorder makes, too.

#include "systeminfo/mac/ioRegistry.h"

#include <cstdint>

namespace norvex::SystemInfo::MacSysInfo {

constexpr char ftdiDriverPropertyList[] =
    "/System/Library/Extensions/FTDIUSBSerialDriver.kext/Contents/Info.plist";
constexpr char ftdiDriverVersionKey[] = "CFBundleVersion";
constexpr char ftdiDriverNameKey[] = "CFBundleName";

constexpr char mailScheme[] = "mailto"; ///< the scheme of the links that a mail application opens

/// Asks the DNS service discovery daemon for its version.
/// @param version receives the version on success
/// @return 0, or the error of `DNSServiceGetProperty`
DNSServiceErrorType dnsServiceDaemonVersion(std::uint32_t& version);

/// Asks Launch Services for the application that opens links of mailScheme.
/// @param path receives the application's path on success; null when the application has none
/// @return false when `LSGetApplicationForURL` fails
bool mailApplicationPath(CFHolder<CFStringRef>& path);

} // namespace norvex::SystemInfo::MacSysInfo
