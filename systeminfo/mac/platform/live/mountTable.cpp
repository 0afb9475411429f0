#include "systeminfo/mac/platform/live/mountTable.h"

#include "systeminfo/mac/platform/live/kernelFiles.h"

#include <QSet>

namespace norvex {

namespace {

/// File systems of servers.
constexpr const char* networkTypes[] = {
    "afs",   "beegfs", "ceph", "cifs",  "coda",  "gpfs", "lustre",
    "ncpfs", "nfs",    "nfs4", "panfs", "pvfs2", "smb3", "smbfs",
};

/// Folders that the host of a virtual machine shares.
constexpr const char* sharedFolderTypes[] = {
    "9p", "drvfs", "fakeowner", "hostfs", "prl_fs", "vboxsf", "virtiofs", "vmhgfs",
};

/// Stands for the mount outside of what the process sees.
constexpr int outside = -1;

} // namespace

QByteArray unescaped(const QByteArray& text)
{
    const auto isOctal = [&text](int position) { return text[position] >= '0' && text[position] <= '7'; };
    QByteArray plain;
    for (int position = 0; position < text.size(); ++position) {
        if (text[position] == '\\' && position + 3 < text.size() && isOctal(position + 1) &&
            isOctal(position + 2) && isOctal(position + 3)) {
            plain.append(char(text.mid(position + 1, 3).toInt(nullptr, 8)));
            position += 3;
        } else {
            plain.append(text[position]);
        }
    }
    return plain;
}

std::optional<Mount> parseMount(const QByteArray& line)
{
    // 36 35 98:0 /root /point options optional... - type source options. The source may be empty.
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
    mount.options = fields.value(dash + 3);
    return hasId && hasParent && mount.point.startsWith('/') ? std::make_optional(mount) : std::nullopt;
}

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

QByteArray mountInfo()
{
    return KernelFiles().contents("/proc/self/mountinfo").value_or(QByteArray());
}

std::optional<Mount> mountWithId(const QByteArray& mountInfo, const QByteArray& id)
{
    const QByteArray beginning = id + ' ';
    int start = 0;
    if (!mountInfo.startsWith(beginning)) {
        start = mountInfo.indexOf('\n' + beginning) + 1;
        if (start == 0) {
            return std::nullopt;
        }
    }
    const int end = mountInfo.indexOf('\n', start);
    return parseMount(mountInfo.mid(start, end < 0 ? -1 : end - start));
}

bool isNetworkType(const QByteArray& type)
{
    return isOneOf(networkTypes, type);
}

bool isSharedFolderType(const QByteArray& type)
{
    return isOneOf(sharedFolderTypes, type);
}

bool isServedType(const QByteArray& type)
{
    // The type of the program's file system may follow behind a dot.
    return type == "fuse" || type == "fuseblk" || type.startsWith("fuse.") || type.startsWith("fuseblk.") ||
           isNetworkType(type) || isSharedFolderType(type) || type == "autofs";
}

MountTable::MountTable(const std::vector<Mount>& mounts)
{
    QSet<int> ids;
    for (const Mount& mount : mounts) {
        ids.insert(mount.id);
    }
    // The first mount has a parent that the process does not see.
    for (const Mount& mount : mounts) {
        const bool isInside = mount.parent != mount.id && ids.contains(mount.parent);
        mountedOn_.insert({isInside ? mount.parent : outside, mount.point}, mount.id);
    }
}

bool MountTable::isVisible(const Mount& mount) const
{
    int reached = enter(outside, "/");
    for (int slash = 0; slash >= 0;) {
        slash = mount.point.indexOf('/', slash + 1);
        reached = enter(reached, mount.point.mid(0, slash));
    }
    return reached == mount.id;
}

/// The mount that a path leads to from another mount.
int MountTable::enter(int reached, const QByteArray& path) const
{
    for (auto next = mountedOn_.find({reached, path}); next != mountedOn_.end() && *next != reached;
         next = mountedOn_.find({reached, path})) {
        reached = *next;
    }
    return reached;
}

} // namespace norvex
