#pragma once

#include <QString>

namespace norvex::Tool {

/// Whether the Macintosh section can describe a recorded machine: on all hosts but macOS.
bool supportsRecordings();

/// Lets the Macintosh section describe a recorded machine from now on.
/// @param[out] errorMessage receives file, line and reason when that fails
bool answerFromRecording(const QString& fileName, QString& errorMessage);

} // namespace norvex::Tool
