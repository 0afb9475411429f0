#pragma once

/// @file
/// The host's services that stand for DNS Service Discovery and Launch Services.

#include "systeminfo/mac/platform/machine.h"

#include <QByteArray>

#include <cstdint>
#include <optional>

namespace norvex {

/// The number that a version text such as "avahi 0.8" or "avahi 0.6.32" counts as, 800 and 632; absent for a
/// text without a version.
std::optional<std::uint32_t> avahiVersionNumber(const QByteArray& versionText);

/// The version of the Avahi daemon, asked over the system bus, if one is running; it is not started for the
/// question. Takes no longer than 0.2 s, whatever the bus or the daemon does. Needs no application object and
/// no event loop, any thread.
/// @return kDNSServiceErr_ServiceNotRunning (-65563) when there is no answer
DaemonAnswer avahiVersion();

/// The path of the desktop file of the application that opens URLs of a scheme; absent when there is none.
std::optional<QByteArray> urlHandlerPath(const QByteArray& scheme);

} // namespace norvex
