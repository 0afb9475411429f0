#pragma once

/// @file
/// The desktop files of installed applications, as the freedesktop.org specifications of desktop entries and of
/// associations with MIME types describe them. They are read anew at each call, on the calling thread: GIO, which
/// knows them, too, starts threads, and ends the process where it can start none.

#include <QByteArray>

#include <optional>

namespace norvex {

/// The path of the desktop file with a name such as "org.example.Mail.desktop"; absent when there is none, or when it is
/// hidden, stands for no application, or names a program that is not there. Absent, too, when a file system that may hold
/// the file, a list of applications or the program does not answer within 2 seconds, also behind a symbolic link.
std::optional<QByteArray> desktopFilePath(const QByteArray& name);

/// The path of the desktop file of the application that opens URLs of a scheme: the first one that is there of those
/// that users, administrators and distributions have chosen, else of those that say that they open such URLs. Absent
/// when there is none, or a file system with a list does not answer. An application whose file or program does not answer
/// is passed over. A file of more than 16 MiB is not read.
std::optional<QByteArray> urlHandlerPath(const QByteArray& scheme);

} // namespace norvex
