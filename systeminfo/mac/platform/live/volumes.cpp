#include "systeminfo/mac/platform/live/volumes.h"

#include "systeminfo/mac/platform/live/fileDescriptor.h"

#include <QHash>
#include <QString>

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <iterator>
#include <limits>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <utility>

namespace norvex {

namespace {

template <std::size_t Count>
bool isOneOf(const char* const (&names)[Count], const QByteArray& name)
{
    return std::any_of(std::begin(names), std::end(names), [&name](const char* one) { return name == one; });
}

/// Read-only images, in which packaged software comes.
constexpr const char* imageTypes[] = {"squashfs", "erofs", "cramfs", "romfs"};

/// File systems of servers.
constexpr const char* networkTypes[] = {
    "afs",   "beegfs", "ceph", "cifs",  "coda",  "gpfs", "lustre",
    "ncpfs", "nfs",    "nfs4", "panfs", "pvfs2", "smb3", "smbfs",
};

/// Other file systems that hold user data and have no block device of their own: on disks of this host, or of the
/// host of a virtual machine.
constexpr const char* storageTypes[] = {
    "bcachefs", "btrfs",     "ecryptfs", "jffs2",  "ubifs",  "zfs",      "9p",
    "drvfs",    "fakeowner", "hostfs",   "prl_fs", "vboxsf", "virtiofs", "vmhgfs",
};

/// File systems of programs that show what is stored elsewhere, or parts of software.
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
    return !mount.device.startsWith("0:") || mount.type == "fuse" || mount.type.startsWith("fuse.") ||
           isOneOf(networkTypes, mount.type) || isOneOf(storageTypes, mount.type);
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
    struct stat64 status = {};
    return ::stat64(path.constData(), &status) != 0 || S_ISDIR(status.st_mode);
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
        // The root of a file system is a folder. A server that is gone would not answer.
        if (mount.root != "/" && !isOneOf(networkTypes, mount.type) && !isFolder(mount.point)) {
            continue;
        }
        const Mount*& best = chosen[mount.device];
        if (best == nullptr || isBetter(mount, *best)) {
            best = &mount;
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
    // A process with another root folder may not see the mount that this folder lies on.
    if (!points.contains("/")) {
        points.prepend("/");
    }
    return points;
}

QList<QByteArray> hostVolumes()
{
    return volumesAmong(currentMounts(), isFolder);
}

std::optional<MacStatfs> hostStatfs(const QByteArray& path)
{
    // This names the file without opening what it holds.
    const FileDescriptor file(::open(path.constData(), O_PATH | O_CLOEXEC));
    struct statvfs64 figures = {};
    if (!file || ::fstatvfs64(file.get(), &figures) != 0) {
        return std::nullopt;
    }
    constexpr std::uint64_t unknown = std::numeric_limits<std::uint64_t>::max();
    MacStatfs record;
    record.f_bsize = std::uint32_t(figures.f_frsize);
    record.f_blocks = figures.f_blocks;
    record.f_bfree = figures.f_bfree;
    record.f_bavail = figures.f_bavail;
    // A file system that makes its nodes when it needs them does not count them.
    record.f_files = figures.f_files == 0 ? unknown : figures.f_files;
    record.f_ffree = figures.f_files == 0 ? unknown : figures.f_ffree;
    if (const auto mount = mountOf(file.get())) {
        copyText(record.f_fstypename, mount->type);
        copyText(record.f_mntonname, mount->point);
        copyText(record.f_mntfromname, mount->source);
    }
    return record;
}

} // namespace norvex
