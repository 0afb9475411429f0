#pragma once

/// @file
/// The host's volumes: the mounted file systems that hold user data.

#include "systeminfo/mac/platform/live/mountTable.h"
#include "systeminfo/mac/platform/norvexPlatform.h"

#include <QByteArray>
#include <QList>

#include <functional>
#include <optional>
#include <vector>

namespace norvex {

/// The mount points of the volumes among mounts, sorted without regard to case.
///
/// Volumes are the root file system, whatever its type, disks, network file systems, folders that the host of a
/// virtual machine shares, and file systems of programs; not the kernel's own file systems, nor images of packaged
/// software. Each volume is listed once, even if it has several mount points, and only if no other mount covers it.
/// @param isFolder whether a mount point is a folder. It is called only for mounts of a part of a file system, which
///        may be single files.
QList<QByteArray> volumesAmong(const std::vector<Mount>& mounts,
                               const std::function<bool(const QByteArray&)>& isFolder);

/// The mount points of this host's volumes. The call asks no server of a network file system.
QList<QByteArray> hostVolumes();

/// The size and names of the file system that holds a path; absent when the query fails or takes too long, see
/// askFileSystem().
std::optional<MacStatfs> hostStatfs(const QByteArray& path);

} // namespace norvex
