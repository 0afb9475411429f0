#pragma once

/// @file
/// The two queries for which the Macintosh section uses Qt on macOS. Elsewhere the layer's machine answers them.

#include <QString>
#include <QStringList>

namespace norvex::SystemInfo::MacSysInfo {

/// Whether a file exists at a path.
bool deviceFileExists(const QString& path);

/// The absolute paths of the volumes: the entries of /Volumes, sorted by name, ignoring case.
QStringList volumeEntries();

} // namespace norvex::SystemInfo::MacSysInfo
