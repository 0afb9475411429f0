#pragma once

#include <QByteArray>

#include <optional>

/// @file
/// Whether names tell upper from lower case, as Linux's file systems have it.

namespace norvex {

struct LetterCase
{
    bool isSensitive = true;  ///< "a" and "A" are two names
    bool isPreserving = true; ///< a name keeps the case it was given
};

/// The letter case of the folder @p path, or of the folder that a file is in: what its file system is, how it
/// is mounted, and whether the folder folds case (ext4, f2fs, tmpfs and others have that for single folders).
/// @return nothing when the path cannot be looked at
std::optional<LetterCase> letterCaseOf(const QByteArray& path);

/// The letter case of a mounted file system.
/// @param type its type as the mount table has it, "vfat"
/// @param options its mount options, separated by commas
///
/// NTFS and the shares of Windows count as what they are, whichever of the drivers presents them: names
/// without a distinction of case that keep theirs.
LetterCase letterCaseOfFileSystem(const QByteArray& type, const QByteArray& options);

} // namespace norvex
