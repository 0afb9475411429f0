#pragma once

/// @file
/// The report's section on network interfaces.
///
/// You may call all functions on any thread, on several at once, and without an application object.
/// std::bad_alloc passes through; nothing else is thrown.

#include "norvexExport.h"

#include <QString>

QT_FORWARD_DECLARE_CLASS(QNetworkInterface)

namespace norvex {
namespace SystemInfo {
namespace NetworkInfo {

/// The line terminator of this section: one line feed. Loading the library sets it. Do not change it.
extern NORVEX_SYSTEMINFO_EXPORT QString sNewLine;

/// The network section: every interface that Qt sees, in Qt's order, with its name, hardware address, state
/// and addresses.
///
/// @return the heading "Network Interfaces Info" and a block for each interface, opened by separatorNetIf(); the
///        heading alone when there is no interface. "Up" and "Down" are Qt's flag QNetworkInterface::IsUp: on macOS
///        whether the interface is switched on, on Linux (with Qt 5.11 or later) also whether it has a link, where the
///        kernel knows that. Behind the label of a missing hardware address stands nothing. The text does not end in a
///        section separator.
///
/// Source: QNetworkInterface::allInterfaces(). SystemInfo::extractAccessKeyValues() reads the names and
/// hardware addresses back out of this text.
NORVEX_SYSTEMINFO_EXPORT QString allInfos();

/// The line that opens an interface's block: 55 underscores and sNewLine.
NORVEX_SYSTEMINFO_EXPORT QString separatorNetIf();

/// The name under which to show an interface to a user.
/// @param iface an interface
/// @return its name(), unchanged; empty for an invalid interface
NORVEX_SYSTEMINFO_EXPORT QString ifUserFriendlyName(const QNetworkInterface& iface);

} // namespace NetworkInfo
} // namespace SystemInfo
} // namespace norvex
