#include "systeminfo/mac/platform/live/volumes.h"

#include "systeminfo/mac/platform/live/kernelFiles.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <iterator>
#include <limits>
#include <string_view>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>
#include <utility>

namespace norvex {

namespace {

// --- Reading mountinfo ---

/// Blanks, tabs, line feeds and backslashes stand as a backslash and three octal digits.
QByteArray unescaped(const QByteArray& text)
{
    const auto isOctal = [&text](int place) { return text[place] >= '0' && text[place] <= '7'; };
    QByteArray plain;
    for (int place = 0; place < text.size(); ++place) {
        if (text[place] == '\\' && place + 3 < text.size() && isOctal(place + 1) && isOctal(place + 2) &&
            isOctal(place + 3)) {
            plain.append(char(text.mid(place + 1, 3).toInt(nullptr, 8)));
            place += 3;
        } else {
            plain.append(text[place]);
        }
    }
    return plain;
}

std::optional<Mount> parseMount(const QByteArray& line)
{
    // 36 35 98:0 /root /point options optional... - type source options; the source may be empty.
    enum { Id, Parent, Device, Root, Point, Options, FirstOptional };
    const QList<QByteArray> fields = line.split(' ');
    const int dash = fields.indexOf("-", FirstOptional);
    if (dash < 0 || fields.size() <= dash + 2) {
        return std::nullopt;
    }
    Mount mount;
    bool hasId = false;
    bool hasParent = false;
    mount.id = fields[Id].toInt(&hasId);
    mount.parent = fields[Parent].toInt(&hasParent);
    mount.device = fields[Device];
    mount.root = unescaped(fields[Root]);
    mount.point = unescaped(fields[Point]);
    mount.type = unescaped(fields[dash + 1]);
    mount.source = unescaped(fields[dash + 2]);
    mount.options = unescaped(fields.value(dash + 3));
    return hasId && hasParent && mount.point.startsWith('/') ? std::make_optional(mount) : std::nullopt;
}

QByteArray mountInfo()
{
    return KernelFiles().contents("/proc/self/mountinfo").value_or(QByteArray());
}

// --- Choosing ---

template <std::size_t Count>
bool isOneOf(const char* const (&names)[Count], const QByteArray& name)
{
    return std::any_of(std::begin(names), std::end(names), [&name](const char* one) { return name == one; });
}

/// Read-only images that packaged software comes in.
constexpr const char* imageTypes[] = {"squashfs", "erofs", "cramfs", "romfs"};

/// File systems of servers.
constexpr const char* networkTypes[] = {
    "afs",   "beegfs", "ceph", "cifs",  "coda",  "gpfs", "lustre",
    "ncpfs", "nfs",    "nfs4", "panfs", "pvfs2", "smb3", "smbfs",
};

/// What else holds user data without a block device of its own: on disks of this host, or of the host of a
/// guest.
constexpr const char* storageTypes[] = {
    "bcachefs", "btrfs",     "ecryptfs", "jffs2",  "ubifs",  "zfs",      "9p",
    "drvfs",    "fakeowner", "hostfs",   "prl_fs", "vboxsf", "virtiofs", "vmhgfs",
};

/// Programs' file systems that offer what lies elsewhere, or parts of software.
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

/// Finds out which mount a path leads to.
class MountTable
{
public:
    explicit MountTable(const std::vector<Mount>& mounts)
    {
        QSet<int> known;
        for (const Mount& mount : mounts) {
            known.insert(mount.id);
        }
        // What the process sees first hangs on a mount that it does not see.
        for (const Mount& mount : mounts) {
            const bool isInside = mount.parent != mount.id && known.contains(mount.parent);
            mountedOn_.insert({isInside ? mount.parent : outside, mount.point}, mount.id);
        }
    }

    /// Whether a mount is what its own mount point leads to.
    bool isVisible(const Mount& mount) const
    {
        int reached = enter(outside, "/");
        for (int slash = 0; slash >= 0;) {
            slash = mount.point.indexOf('/', slash + 1);
            reached = enter(reached, mount.point.mid(0, slash));
        }
        return reached == mount.id;
    }

private:
    static constexpr int outside = -1;

    int enter(int reached, const QByteArray& path) const
    {
        for (auto next = mountedOn_.find({reached, path}); next != mountedOn_.end() && *next != reached;
             next = mountedOn_.find({reached, path})) {
            reached = *next;
        }
        return reached;
    }

    QHash<std::pair<int, QByteArray>, int> mountedOn_;
};

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

// --- Figures ---

/// A descriptor that names a file without opening what it holds.
class FileName
{
public:
    explicit FileName(const QByteArray& path) : descriptor_(::open(path.constData(), O_PATH | O_CLOEXEC)) {}
    FileName(const FileName&) = delete;
    FileName& operator=(const FileName&) = delete;
    ~FileName()
    {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
    }

    int descriptor() const { return descriptor_; }

private:
    int descriptor_;
};

template <std::size_t Size>
void copyText(char (&field)[Size], const QByteArray& text)
{
    std::memcpy(field, text.constData(), std::min(std::size_t(text.size()), Size - 1));
}

} // namespace

std::vector<Mount> parseMounts(const QByteArray& mountInfo)
{
    std::vector<Mount> mounts;
    for (const QByteArray& line : mountInfo.split('\n')) {
        if (auto mount = parseMount(line)) {
            mounts.push_back(std::move(*mount));
        }
    }
    return mounts;
}

QList<QByteArray> volumesAmong(const std::vector<Mount>& mounts,
                               const std::function<bool(const QByteArray&)>& isFolder)
{
    const MountTable table(mounts);
    QHash<QByteArray, const Mount*> chosen;
    for (const Mount& mount : mounts) {
        if (!holdsUserData(mount) || !table.isVisible(mount)) {
            continue;
        }
        // The root of a file system is a folder. A server that is gone must not be asked.
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
    // A process in a changed root folder may not see the mount that it lies on.
    if (!points.contains("/")) {
        points.prepend("/");
    }
    return points;
}

QList<QByteArray> hostVolumes()
{
    return volumesAmong(parseMounts(mountInfo()), isFolder);
}

std::optional<Mount> mountOf(int descriptor)
{
    const auto facts = KernelFiles().contents("/proc/self/fdinfo/" + QByteArray::number(descriptor));
    const auto id = facts ? valueOfKey(*facts, "mnt_id", ':') : std::nullopt;
    if (!id) {
        return std::nullopt;
    }
    const QByteArray lines = "\n" + mountInfo();
    const int found = lines.indexOf("\n" + *id + " ");
    if (found < 0) {
        return std::nullopt;
    }
    const int end = lines.indexOf('\n', found + 1);
    return parseMount(lines.mid(found + 1, end < 0 ? -1 : end - found - 1));
}

std::optional<MacStatfs> hostStatfs(const QByteArray& path)
{
    const FileName file(path);
    struct statvfs64 figures = {};
    if (file.descriptor() < 0 || ::fstatvfs64(file.descriptor(), &figures) != 0) {
        return std::nullopt;
    }
    constexpr std::uint64_t unknown = std::numeric_limits<std::uint64_t>::max();
    MacStatfs record;
    record.f_bsize = std::uint32_t(figures.f_frsize);
    record.f_blocks = figures.f_blocks;
    record.f_bfree = figures.f_bfree;
    record.f_bavail = figures.f_bavail;
    // A file system that makes its nodes as it needs them counts none.
    record.f_files = figures.f_files == 0 ? unknown : figures.f_files;
    record.f_ffree = figures.f_files == 0 ? unknown : figures.f_ffree;
    if (const auto mount = mountOf(file.descriptor())) {
        copyText(record.f_fstypename, mount->type);
        copyText(record.f_mntonname, mount->point);
        copyText(record.f_mntfromname, mount->source);
    }
    return record;
}

} // namespace norvex
