#pragma once

/// @file
/// The two questions that the Macintosh section asks through Qt on macOS. Elsewhere the machine at hand, or
/// the recorded one, answers.

#include <QString>
#include <QStringList>

namespace norvex::SystemInfo::MacSysInfo {

/// Whether a file exists at the path.
bool deviceFileExists(const QString& path);

/// The absolute paths of the entries of /Volumes, by name, ignoring case.
QStringList volumeEntries();

} // namespace norvex::SystemInfo::MacSysInfo
