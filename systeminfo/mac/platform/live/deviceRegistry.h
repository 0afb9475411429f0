#pragma once

/// @file
/// The I/O registry of this host: what the kernel and udev know of its devices, as entries of the classes that a
/// Mac has for them.

#include "systeminfo/mac/platform/registry.h"

#include <QByteArray>

namespace norvex {

/// The host's registry at this moment, as far as the entries of a class need it. The devices hang below the root
/// entry, which is always there; a query for a class looks at the devices that can be of this class and no others.
/// @param className empty for the whole registry; a class that no device here has gives the root entry alone
RegistryPtr liveRegistry(const QByteArray& className);
/// The root entry alone: nothing of the host is scanned.
RegistryPtr liveRoot();

/// The class above a class of the host's registry, empty when there is none or the class is unknown.
QByteArray liveSuperclassOf(const QByteArray& className);

} // namespace norvex
