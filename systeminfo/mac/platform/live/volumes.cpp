#include "systeminfo/mac/platform/live/volumes.h"

#include "systeminfo/mac/platform/live/fileSystemQuery.h"

#include <QHash>
#include <QString>

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace norvex {

namespace {

/// Read-only images, in which software is packaged.
constexpr const char* imageTypes[] = {"squashfs", "erofs", "cramfs", "romfs"};

/// Other file systems that hold user data on disks of this host and have no block device of their own.
constexpr const char* storageTypes[] = {"bcachefs", "btrfs", "ecryptfs", "jffs2", "ubifs", "zfs"};

/// File systems of programs that hold no user data of their own: they show what is stored elsewhere, or software.
constexpr const char* auxiliaryPrograms[] = {
    "fuse.fuse-overlayfs", "fuse.gvfs-fuse-daemon", "fuse.gvfsd-fuse", "fuse.lxcfs",
    "fuse.portal",         "fuse.rofiles-fuse",     "fuse.snapfuse",   "fuse.squashfuse",
    "fuse.squashfuse_ll",  "fuse.vmware-vmblock",
};

bool holdsUserData(const Mount& mount)
{
    if (mount.point == "/") {
        return true;
    }
    if (isOneOf(imageTypes, mount.type) || isOneOf(auxiliaryPrograms, mount.type) ||
        mount.type.toLower().endsWith(".appimage")) {
        return false;
    }
    // The kernel numbers file systems without a block device under the major number 0.
    return !mount.device.startsWith("0:") || (isServedType(mount.type) && mount.type != "autofs") ||
           isOneOf(storageTypes, mount.type);
}

/// Whether a mount of a file system represents it better than another mount of it.
bool isBetter(const Mount& mount, const Mount& other)
{
    const auto rank = [](const Mount& one) {
        return std::make_pair(one.point == "/" ? 0 : one.root == "/" ? 1 : 2, one.point.size());
    };
    return rank(mount) < rank(other);
}

bool isFolder(const QByteArray& path)
{
    const auto answer = askFileSystem(path, Subject::Path);
    return !answer || answer->isFolder;
}

template <std::size_t Size>
void copyText(char (&field)[Size], const QByteArray& text)
{
    std::memcpy(field, text.constData(), std::min(std::size_t(text.size()), Size - 1));
}

} // namespace

QList<QByteArray> volumesAmong(const std::vector<Mount>& mounts,
                               const std::function<bool(const QByteArray&)>& isFolder)
{
    const MountTable table(mounts);
    QHash<QByteArray, const Mount*> chosen;
    for (const Mount& mount : mounts) {
        if (!holdsUserData(mount) || !table.isVisible(mount)) {
            continue;
        }
        const Mount* const best = chosen.value(mount.device);
        if (best != nullptr && !isBetter(mount, *best)) {
            continue;
        }
        // Last, because looking takes time, and a container's host can have thousands of bind mounts. The root of a
        // file system is a folder. A server that is gone would not answer.
        if (mount.root == "/" || isNetworkType(mount.type) || isFolder(mount.point)) {
            chosen.insert(mount.device, &mount);
        }
    }
    QList<std::pair<QString, QByteArray>> volumes;
    for (const Mount* mount : chosen) {
        volumes.append({QString::fromUtf8(mount->point).toCaseFolded(), mount->point});
    }
    std::sort(volumes.begin(), volumes.end());
    QList<QByteArray> points;
    for (const auto& volume : volumes) {
        points.append(volume.second);
    }
    // A process in a chroot may not see the mount that holds its root folder.
    if (!points.contains("/")) {
        points.prepend("/");
    }
    return points;
}

QList<QByteArray> hostVolumes()
{
    return volumesAmong(parseMounts(mountInfo()), isFolder);
}

std::optional<MacStatfs> hostStatfs(const QByteArray& path)
{
    const auto answer = askFileSystem(path, Subject::Path);
    if (!answer) {
        return std::nullopt;
    }
    const auto& figures = answer->figures;
    constexpr std::uint64_t unknown = std::numeric_limits<std::uint64_t>::max();
    MacStatfs record;
    record.f_bsize = std::uint32_t(figures.f_frsize);
    record.f_blocks = figures.f_blocks;
    record.f_bfree = figures.f_bfree;
    record.f_bavail = figures.f_bavail;
    // A file system that makes its nodes when it needs them does not count them.
    record.f_files = figures.f_files == 0 ? unknown : figures.f_files;
    record.f_ffree = figures.f_files == 0 ? unknown : figures.f_ffree;
    if (answer->mount) {
        copyText(record.f_fstypename, answer->mount->type);
        copyText(record.f_mntonname, answer->mount->point);
        copyText(record.f_mntfromname, answer->mount->source);
    }
    return record;
}

} // namespace norvex
