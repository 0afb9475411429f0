#pragma once

#include <QString>

namespace norvex::Tool {

/// Whether the Macintosh section can answer from recordings, as it can wherever macOS's interfaces are stood
/// in for.
bool supportsRecordings();

/// Lets the Macintosh section answer from a recording from now on.
/// @param[out] errorMessage receives file, line and reason when that fails
bool answerFromRecording(const QString& fileName, QString& errorMessage);

} // namespace norvex::Tool
