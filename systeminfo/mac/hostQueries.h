#pragma once

/// @file
/// The two questions that the Macintosh section asks through Qt on macOS. Elsewhere the machine at hand, or
/// the recorded one, answers.

#include <QString>
#include <QStringList>

namespace norvex {
namespace SystemInfo {
namespace MacSysInfo {

/// Whether a file exists at the path.
bool deviceFileExists(const QString& path);

/// The absolute paths of the entries of /Volumes, by name, ignoring case.
QStringList volumeEntries();

} // namespace MacSysInfo
} // namespace SystemInfo
} // namespace norvex
