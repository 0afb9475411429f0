#include "systeminfo/mac/platform/live/letterCase.h"

#include "systeminfo/mac/platform/live/fileSystemQuery.h"

#include <QList>

#include <map>

namespace norvex {

std::optional<LetterCase> letterCaseOf(const QByteArray& path)
{
    const auto answer = askFileSystem(path, Subject::Folder);
    if (!answer || !answer->mount) {
        return std::nullopt;
    }
    LetterCase letterCase = letterCaseOfFileSystem(answer->mount->type, answer->mount->options);
    if (answer->foldsCase) {
        letterCase.isSensitive = false;
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
