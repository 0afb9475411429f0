#pragma once

/// @file
/// What a path leads to, asked so that no file system keeps the caller waiting.
///
/// Some file systems are served: a server, a program or the host of a virtual machine answers for them, or does not. A
/// process of its own looks at a path on them. A thread would not do: once a program has taken a request and does not
/// answer it, the thread cannot end, and neither can its process. The limit is 2 seconds for all of them together.

#include "systeminfo/mac/platform/live/mountTable.h"

#include <QByteArray>
#include <QList>

#include <optional>
#include <sys/statvfs.h>

namespace norvex {

/// What a question is about: what the path leads to, or that folder, or the folder of that file.
enum class Subject { Path, Folder };

struct FileSystemAnswer
{
    bool isFolder = false;
    /// Whether the folder itself ignores case; known of Subject::Folder only.
    bool foldsCase = false;
    struct statvfs64 figures = {};
    /// The mount through which the path was reached; absent when /proc does not tell.
    std::optional<Mount> mount;
};

/// Asks about a path.
/// @return absent when it leads nowhere, when its file system does not answer in time or did not answer the last time
///         and is still being asked, and on a served file system when no process can be started
///
/// When an answer is late, all other served file systems are asked as well, so that all share the limit. A process that
/// got no answer stays, until its file system answers or the thread that asked has ended; the file system is not asked
/// again until then. The caller's process never waits for it, nor receives a signal of it.
std::optional<FileSystemAnswer> askFileSystem(const QByteArray& path, Subject subject);

/// Whether paths can be used without waiting: their file systems answer, if only that nothing is there. Costs next to
/// nothing where no file system is served, and else a process for each served file system that the paths are on.
bool fileSystemsAnswer(const QList<QByteArray>& paths);

} // namespace norvex
