#include "systeminfo/mac/platform/live/caseSensitivity.h"

#include "systeminfo/mac/platform/live/fileSystemQuery.h"

#include <QList>

#include <map>

namespace norvex {

std::optional<CaseSensitivity> caseSensitivityOf(const QByteArray& path)
{
    const auto answer = askFileSystem(path, Subject::Folder);
    if (!answer || !answer->mount) {
        return std::nullopt;
    }
    CaseSensitivity caseSensitivity =
        caseSensitivityOfFileSystem(answer->mount->type, answer->mount->options);
    if (answer->foldsCase) {
        caseSensitivity.isSensitive = false;
    }
    return caseSensitivity;
}

CaseSensitivity caseSensitivityOfFileSystem(const QByteArray& type, const QByteArray& options)
{
    static constexpr CaseSensitivity sensitive = {true, true};
    static constexpr CaseSensitivity preserving = {false, true};
    static constexpr CaseSensitivity none = {false, false};
    static const std::map<QByteArray, CaseSensitivity> types = {
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
    CaseSensitivity caseSensitivity = found == types.end() ? sensitive : found->second;
    const QList<QByteArray> words = options.split(',');
    for (const QByteArray& word : words) {
        // The options of cifs and ntfs3, of zfs, and of iso9660 ("relaxed").
        if (word == "nocase" || word == "caseinsensitive" || word == "check=r") {
            caseSensitivity.isSensitive = false;
        }
    }
    return caseSensitivity;
}

} // namespace norvex
