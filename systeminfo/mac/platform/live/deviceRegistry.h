#pragma once

/// @file
/// The I/O registry of this host: the devices that the kernel and udev list, as entries of the classes that such
/// devices have on a Mac.

#include "systeminfo/mac/platform/registry.h"

#include <QByteArray>

namespace norvex {

/// The host's registry at this moment: the root entry, and below it the kinds of devices that can have a class.
/// @param className empty for all devices. A class that no device of a host can have gives the root entry alone.
RegistryPtr hostRegistry(const QByteArray& className);
/// The root entry alone, without a look at the host's devices.
RegistryPtr hostRoot();

/// The superclass of a class of the host's registry; empty when there is none or the class is unknown.
QByteArray hostSuperclassOf(const QByteArray& className);

} // namespace norvex
