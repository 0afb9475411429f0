#pragma once

/// @file
/// The mounts that this process sees.

#include <QByteArray>
#include <QHash>

#include <optional>
#include <utility>
#include <vector>

namespace norvex {

/// A line of /proc/self/mountinfo.
struct Mount
{
    int id = 0;
    int parent = 0;
    /// major:minor of the file system's device: the same for all mounts of one file system.
    QByteArray device;
    /// The folder of the file system that is mounted.
    QByteArray root;
    /// Where it is mounted.
    QByteArray point;
    QByteArray type;
    /// What is mounted: a device file, a server's folder, or a word of the file system's own.
    QByteArray source;
    /// The file system's own options, separated by commas.
    QByteArray options;
};

/// The mounts of a mountinfo text, in its order, with their names unescaped. Malformed lines are left out.
std::vector<Mount> parseMounts(const QByteArray& mountInfo);

/// The mounts at this moment.
std::vector<Mount> currentMounts();

/// The mount through which an open file was reached; absent when /proc does not tell.
std::optional<Mount> mountOf(int descriptor);

/// Finds out which mount a path leads to.
class MountTable
{
public:
    explicit MountTable(const std::vector<Mount>& mounts);

    /// Whether the mount point of a mount leads to this mount, rather than to one that covers it.
    bool isVisible(const Mount& mount) const;

private:
    int enter(int reached, const QByteArray& path) const;

    /// Mount and path -> the mount that covers it there.
    QHash<std::pair<int, QByteArray>, int> mountedOn_;
};

} // namespace norvex
