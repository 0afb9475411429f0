#pragma once

/// @file
/// The two queries that the Macintosh section makes through Qt on macOS. On other hosts the machine answers, this host
/// or a recording.

#include <QString>
#include <QStringList>

namespace norvex::SystemInfo::MacSysInfo {

/// Whether a file exists at a path.
bool deviceFileExists(const QString& path);

/// The absolute paths of the entries of /Volumes, sorted by name, ignoring case.
QStringList volumeEntries();

} // namespace norvex::SystemInfo::MacSysInfo
