#pragma once

/// @file
/// Whether file names on Linux's file systems differ by case alone.

#include <QByteArray>

#include <optional>

namespace norvex {

struct CaseSensitivity
{
    bool isSensitive = true;  ///< "a" and "A" are two names
    bool isPreserving = true; ///< a name keeps the case that it was given
};

/// The case sensitivity of the folder @p path, or of the folder of the file @p path. It depends on the type of the file
/// system, on its mount options, and on the folder itself: ext4, f2fs, tmpfs and others can ignore case in single
/// folders.
/// @return absent when the path cannot be read, or its file system does not answer in time (askFileSystem())
std::optional<CaseSensitivity> caseSensitivityOf(const QByteArray& path);

/// The case sensitivity of a mounted file system.
/// @param type its type in the mount table, such as "vfat"
/// @param options its mount options, separated by commas
///
/// NTFS and shares of Windows hosts ignore case and preserve it, whichever driver presents them.
CaseSensitivity caseSensitivityOfFileSystem(const QByteArray& type, const QByteArray& options);

} // namespace norvex
