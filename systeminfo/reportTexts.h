#pragma once

/// @file
/// The texts that writers and readers of a report share.

namespace norvex::SystemInfo::Internal {

constexpr char macintoshBanner[] = "############ Macintosh specific section ###########";
constexpr char windowsBanner[] =
    "############ Windows specific section ###########"; ///< of the Windows counterpart
constexpr char qtBanner[] = "###### System informations retrieved using Qt #######";

constexpr int separatorLength = 72;          ///< hyphens of the line behind a group of sections
constexpr int interfaceSeparatorLength = 55; ///< underscores of the line above a network interface

constexpr char networkHeading[] = "Network Interfaces Info";
constexpr char hardwareAddressLabel[] = "Hardware address";

} // namespace norvex::SystemInfo::Internal
