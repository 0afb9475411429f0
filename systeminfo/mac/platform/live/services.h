#pragma once

/// @file
/// The host's counterpart of the DNS service discovery daemon: Avahi.

#include "systeminfo/mac/platform/machine.h"

#include <QByteArray>

#include <cstdint>
#include <optional>

namespace norvex {

/// The number for a version text: 800 for "avahi 0.8", 632 for "avahi 0.6.32"; absent for a text without a version.
std::optional<std::uint32_t> avahiVersionNumber(const QByteArray& versionText);

/// The version of the Avahi daemon, from the system bus. It does not start a daemon that is not running, and takes at
/// most 0.2 s, whatever the bus or the daemon does. It needs no application object and no event loop. Any thread.
/// @return the error kDNSServiceErr_ServiceNotRunning (-65563) when the daemon does not answer
DaemonAnswer avahiVersion();

} // namespace norvex
