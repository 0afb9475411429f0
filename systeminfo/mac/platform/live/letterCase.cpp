#include "systeminfo/mac/platform/live/letterCase.h"

#include "systeminfo/mac/platform/live/fileDescriptor.h"
#include "systeminfo/mac/platform/live/mountTable.h"

#include <QList>

#include <cstdlib>
#include <fcntl.h>
#include <linux/fs.h>
#include <map>
#include <memory>
#include <sys/ioctl.h>
#include <sys/stat.h>

namespace norvex {

namespace {

/// The folder that a path leads to, or the folder of the file that it leads to; empty when it leads nowhere.
QByteArray folderOf(const QByteArray& path)
{
    struct stat status = {};
    if (stat(path.constData(), &status) != 0) {
        return QByteArray();
    }
    if (S_ISDIR(status.st_mode)) {
        return path;
    }
    const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path.constData(), nullptr),
                                                               &std::free);
    const QByteArray file(resolved.get());
    return file.left(file.lastIndexOf('/') + 1);
}

/// The letter case of the mount that an open file is on.
std::optional<LetterCase> letterCaseOfMount(int descriptor)
{
    const auto mount = mountOf(descriptor);
    return mount ? std::make_optional(letterCaseOfFileSystem(mount->type, mount->options)) : std::nullopt;
}

bool foldsCase(const QByteArray& folder)
{
    const FileDescriptor descriptor(
        open(folder.constData(), O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC));
    unsigned int flags[2] = {}; // with room for the long that some file systems write
    return descriptor && ioctl(descriptor.get(), FS_IOC_GETFLAGS, flags) == 0 &&
           (flags[0] & FS_CASEFOLD_FL) != 0;
}

} // namespace

std::optional<LetterCase> letterCaseOf(const QByteArray& path)
{
    const QByteArray folder = folderOf(path);
    const FileDescriptor descriptor(open(folder.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!descriptor) {
        return std::nullopt;
    }
    std::optional<LetterCase> letterCase = letterCaseOfMount(descriptor.get());
    if (letterCase && foldsCase(folder)) {
        letterCase->isSensitive = false;
    }
    return letterCase;
}

LetterCase letterCaseOfFileSystem(const QByteArray& type, const QByteArray& options)
{
    static constexpr LetterCase sensitive = {true, true};
    static constexpr LetterCase preserving = {false, true};
    static constexpr LetterCase none = {false, false};
    static const std::map<QByteArray, LetterCase> types = {
        {"msdos", none},
        {"vfat", preserving},
        {"exfat", preserving},
        {"fuse.exfat", preserving},
        {"ntfs", preserving},
        {"ntfs3", preserving},
        {"fuseblk", preserving},
        {"fuse.ntfs", preserving},
        {"fuse.ntfs-3g", preserving},
        {"hfs", preserving},
        {"hfsplus", preserving},
        {"hpfs", preserving},
        {"affs", preserving},
        {"cifs", preserving},
        {"smb3", preserving},
        {"smbfs", preserving},
    };
    const auto found = types.find(type);
    LetterCase letterCase = found == types.end() ? sensitive : found->second;
    const QList<QByteArray> words = options.split(',');
    for (const QByteArray& word : words) {
        // The options of cifs and ntfs3, of zfs, and of iso9660 ("relaxed").
        if (word == "nocase" || word == "caseinsensitive" || word == "check=r") {
            letterCase.isSensitive = false;
        }
    }
    return letterCase;
}

} // namespace norvex
