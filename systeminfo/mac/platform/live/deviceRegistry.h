#pragma once

/// @file
/// The I/O registry of this host: the devices that the kernel and udev list, as entries of the classes that a Mac has
/// for them.

#include "systeminfo/mac/platform/registry.h"

#include <QByteArray>

namespace norvex {

/// The host's registry at this moment, with only the devices that can be of a class. The root entry is always there;
/// the devices are below it.
/// @param className empty for the whole registry. A class that no device here has gives the root entry alone.
RegistryPtr hostRegistry(const QByteArray& className);
/// The root entry alone, without a look at the host's devices.
RegistryPtr hostRoot();

/// The superclass of a class of the host's registry; empty when there is none or the class is unknown.
QByteArray hostSuperclassOf(const QByteArray& className);

} // namespace norvex
