#include "systeminfo/mac/platform/live/servedMounts.h"

#include "systeminfo/mac/platform/live/fileDescriptor.h"
#include "systeminfo/mac/platform/live/mountTable.h"

#include <QHash>

#include <algorithm>
#include <climits>
#include <fcntl.h>
#include <mutex>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace norvex {

namespace {

QByteArray linkTarget(const QByteArray& path)
{
    char target[PATH_MAX];
    const ssize_t length = ::readlink(path.constData(), target, sizeof target);
    return QByteArray(target, int(std::max<ssize_t>(length, 0)));
}

QByteArray workingFolder()
{
    char folder[PATH_MAX];
    return ::getcwd(folder, sizeof folder) != nullptr ? QByteArray(folder) : QByteArray();
}

/// The type in a line of a mountinfo text. The table may be long, and few of its lines need more than this.
QByteArray typeInLine(const QByteArray& line)
{
    static const QByteArray separator = " - ";
    const int type = line.indexOf(separator) + separator.size();
    return line.mid(type, line.indexOf(' ', type) - type);
}

/// The folders that an overlay consists of, by its options.
QList<QByteArray> layersOf(const Mount& overlay)
{
    // In a list of folders a backslash stands in front of a colon that belongs to a name.
    static const QByteArray namesColon = "\\:";
    static const QByteArray mark = "\n";
    QList<QByteArray> layers;
    for (const QByteArray& option : overlay.options.split(',')) {
        // Also "lowerdir+=FOLDER" and "datadir+=FOLDER", one at a time.
        if (option.startsWith("lowerdir") || option.startsWith("datadir") || option.startsWith("upperdir")) {
            QByteArray folders = unescaped(option.mid(option.indexOf('=') + 1));
            for (QByteArray folder : folders.replace(namesColon, mark).split(':')) {
                layers.append(folder.replace(mark, ":"));
            }
        }
    }
    return layers;
}

/// The files that a block device shows: it may be a loop device, a partition of one, or be made of such devices.
QList<QByteArray> filesBehind(const QByteArray& device, const KernelFiles& files)
{
    const QByteArray folder = "/sys/dev/block/" + device;
    const char* const disk = files.line(folder + "/partition") ? "/.." : "";
    QList<QByteArray> behind;
    if (const auto file = files.line(folder + disk + "/loop/backing_file")) {
        behind.append(*file);
    }
    for (const QByteArray& part : files.matching(folder + "/slaves/*/dev")) {
        behind += filesBehind(files.line(part).value_or(QByteArray()), files);
    }
    return behind;
}

/// What makes a file the same as another one.
using FileIdentity = std::pair<dev_t, ino64_t>;

FileIdentity identityOf(const struct stat64& status)
{
    return {status.st_dev, status.st_ino};
}

FileIdentity identityOf(int descriptor)
{
    struct stat64 status = {};
    ::fstat64(descriptor, &status);
    return identityOf(status);
}

FileIdentity identityOf(const char* path)
{
    struct stat64 status = {};
    ::stat64(path, &status);
    return identityOf(status);
}

/// Tells whether the mount table is still the one that was read.
class MountWatch
{
public:
    MountWatch()
        : table_(::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC)), file_(identityOf(table_.get()))
    {}
    MountWatch(const MountWatch&) = delete;
    MountWatch& operator=(const MountWatch&) = delete;

    ~MountWatch()
    {
        // Somebody who closes all descriptors may have closed this one, and its number may be another file's.
        if (!hasTable()) {
            table_.release();
        }
    }

    bool isUnchanged() const
    {
        pollfd news = {table_.get(), POLLPRI, 0};
        return hasTable() && isOfThisProcess() && ::poll(&news, 1, 0) == 0;
    }

private:
    bool hasTable() const { return table_ && identityOf(table_.get()) == file_; }

    /// A process that was forked, another mount namespace and another root folder have other mounts.
    bool isOfThisProcess() const
    {
        return process_ == ::getpid() && namespace_ == identityOf("/proc/self/ns/mnt") &&
               root_ == identityOf("/");
    }

    FileDescriptor table_;
    const FileIdentity file_;
    const pid_t process_ = ::getpid();
    const FileIdentity namespace_ = identityOf("/proc/self/ns/mnt");
    const FileIdentity root_ = identityOf("/");
};

} // namespace

ServedMounts::ServedMounts(const QByteArray& mountInfo, const KernelFiles& files) : mountInfo_(mountInfo)
{
    for (const QByteArray& line : mountInfo.split('\n')) {
        if (isServedType(typeInLine(line))) {
            if (const auto mount = parseMount(line)) {
                add(mount->point);
            }
        }
    }
    if (!points_.isEmpty()) {
        addStoredOnServed(files);
    }
}

void ServedMounts::add(const QByteArray& point)
{
    if (point != "/" && !pointSet_.contains(point)) {
        points_.append(point);
        pointSet_.insert(point);
    }
}

void ServedMounts::addStoredOnServed(const KernelFiles& files)
{
    QHash<QByteArray, QList<QByteArray>> filesOfDevices;
    std::vector<std::pair<QByteArray, QList<QByteArray>>> stored;
    for (const Mount& mount : parseMounts(mountInfo_)) {
        if (mount.type == "overlay") {
            stored.emplace_back(mount.point, layersOf(mount));
        } else if (!mount.device.startsWith("0:")) {
            if (!filesOfDevices.contains(mount.device)) {
                filesOfDevices.insert(mount.device, filesBehind(mount.device, files));
            }
            stored.emplace_back(mount.point, filesOfDevices.value(mount.device));
        }
    }
    // A file or folder may itself be on a file system that is stored on a served one.
    const auto isServed = [this](const QByteArray& path) {
        return path.startsWith('/') && !pointOnWayTo(path).isEmpty();
    };
    for (int before = -1; before != points_.size();) {
        before = points_.size();
        for (const auto& [point, paths] : stored) {
            if (std::any_of(paths.begin(), paths.end(), isServed)) {
                add(point);
            }
        }
    }
}

std::shared_ptr<const ServedMounts> ServedMounts::current()
{
    // Never destroyed: another thread may ask while the process ends.
    static auto& mutex = *new std::mutex;
    static auto& watch = *new std::unique_ptr<MountWatch>;
    static auto& mounts = *new std::shared_ptr<const ServedMounts>;
    const std::lock_guard<std::mutex> lock(mutex);
    if (!watch || !watch->isUnchanged()) {
        // It has told of the change and does not do so again, even where there is no memory for a new one.
        watch.reset();
        // Opened before the table is read: what changes in between is met by the next call.
        auto newWatch = std::make_unique<MountWatch>();
        mounts = std::make_shared<ServedMounts>(norvex::mountInfo());
        watch = std::move(newWatch);
    }
    return mounts;
}

/// The innermost served mount that a path without links lies on.
QByteArray ServedMounts::innermostPoint(QByteArray path) const
{
    while (!path.isEmpty() && !pointSet_.contains(path)) {
        path.truncate(std::max(path.lastIndexOf('/'), 0));
    }
    return path;
}

QByteArray ServedMounts::pointOnWayTo(const QByteArray& path) const
{
    if (points_.isEmpty()) {
        return QByteArray();
    }
    constexpr int mostLinks = 40; // the kernel's own limit
    QByteArray reached;
    QList<QByteArray> names = (path.startsWith('/') ? path : workingFolder() + '/' + path).split('/');
    for (int links = 0; !names.isEmpty() && links <= mostLinks;) {
        const QByteArray name = names.takeFirst();
        if (name.isEmpty() || name == ".") {
            continue;
        }
        if (name == "..") {
            reached.truncate(std::max(reached.lastIndexOf('/'), 0));
            continue;
        }
        const QByteArray next = reached + '/' + name;
        if (pointSet_.contains(next)) {
            return innermostPoint(next + '/' + names.join('/'));
        }
        const QByteArray target = linkTarget(next);
        if (target.isEmpty()) {
            reached = next;
            continue;
        }
        ++links;
        names = target.split('/') + names;
        reached = target.startsWith('/') ? QByteArray() : reached;
    }
    return QByteArray();
}

} // namespace norvex
