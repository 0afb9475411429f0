#pragma once

/// @file
/// The host's volumes: the mounted file systems that hold user data.

#include "systeminfo/mac/platform/norvexPlatform.h"

#include <QByteArray>
#include <QList>

#include <functional>
#include <optional>
#include <vector>

namespace norvex {

/// A line of /proc/self/mountinfo.
struct Mount
{
    int id = 0;
    int parent = 0;
    QByteArray
        device;       ///< major:minor of the file system's device, the same for all mounts of one file system
    QByteArray root;  ///< the folder of the file system that is mounted
    QByteArray point; ///< where it is mounted
    QByteArray type;
    QByteArray source; ///< what is mounted: a device file, a server's folder, a word of the file system's own
    QByteArray options; ///< the file system's own, separated by commas
};

/// The mounts of a mountinfo text, in its order, with their names unescaped. Lines that are none are left
/// out.
std::vector<Mount> parseMounts(const QByteArray& mountInfo);

/// The mount points of the volumes among mounts, sorted ignoring case.
///
/// Volumes are the root file system, whatever its type, disks, network file systems, folders shared by a host
/// with its guest, and file systems of programs; not the kernel's own file systems, nor images of packaged
/// software. Each is listed once, although it may be mounted at several places, and only if other mounts do
/// not cover it.
/// @param isFolder whether a mount point is a folder; asked only of mounts of a part of a file system, which
/// may
///        be single files
QList<QByteArray> volumesAmong(const std::vector<Mount>& mounts,
                               const std::function<bool(const QByteArray&)>& isFolder);

/// The mount points of this host's volumes. Servers of network file systems are not asked for anything.
QList<QByteArray> hostVolumes();

/// The mount that an open file was reached through; absent where /proc does not tell.
std::optional<Mount> mountOf(int descriptor);

/// The figures and names of the file system that holds a path; absent when it cannot be asked. Waits as long
/// as the file system does: a network file system whose server is gone may not answer for a long time.
std::optional<MacStatfs> hostStatfs(const QByteArray& path);

} // namespace norvex
