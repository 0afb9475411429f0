#pragma once

/// @file
/// The mounts that this process sees.

#include <QByteArray>
#include <QHash>

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

namespace norvex {

/// Whether a list of names holds a name.
template <std::size_t Count>
bool isOneOf(const char* const (&names)[Count], const QByteArray& name)
{
    return std::any_of(std::begin(names), std::end(names), [&name](const char* one) { return name == one; });
}

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
    /// The file system's own options, separated by commas and escaped as in the text.
    QByteArray options;
};

/// A text of a mountinfo text without escapes: blanks, tabs, line feeds, backslashes and, in options, commas are written as
/// a backslash and three octal digits.
QByteArray unescaped(const QByteArray& text);

/// A line of a mountinfo text, with its names unescaped; absent when it is malformed.
std::optional<Mount> parseMount(const QByteArray& line);

/// The mounts of a mountinfo text, in its order, with their names unescaped. Malformed lines are left out.
std::vector<Mount> parseMounts(const QByteArray& mountInfo);

/// The mountinfo text at this moment.
QByteArray mountInfo();

/// The mount with a number in a mountinfo text; absent when there is none.
std::optional<Mount> mountWithId(const QByteArray& mountInfo, const QByteArray& id);

/// Whether file systems of this type are on a server.
bool isNetworkType(const QByteArray& type);

/// Whether file systems of this type are folders that the host of a virtual machine shares with it.
bool isSharedFolderType(const QByteArray& type);

/// Whether a server, a program or the host of a virtual machine serves file systems of this type, so that a call on
/// them may wait without end. autofs counts, too: it mounts such a file system when it is used.
bool isServedType(const QByteArray& type);

/// Finds out which mount a path leads to.
class MountTable
{
public:
    explicit MountTable(const std::vector<Mount>& mounts);

    /// Whether its mount point leads to this mount, rather than to another one that was mounted over it.
    bool isVisible(const Mount& mount) const;

private:
    int enter(int reached, const QByteArray& path) const;

    /// A mount and a path in it -> the mount that was mounted there.
    QHash<std::pair<int, QByteArray>, int> mountedOn_;
};

} // namespace norvex
