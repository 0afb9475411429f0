#pragma once

#include <QString>

#include <functional>

namespace norvex::Viewer {

/// Whether recordings of machines can answer on this system.
bool canReadRecordings();

/// The Macintosh half of the report of a recorded machine. The machine that answers is the process's, so that a call waits
/// for the end of another one and of whatever askThisMachine() runs. Any thread.
/// @param[out] errorMessage receives file, place and reason when that fails
/// @return whether there is a report
bool readRecording(const QString& fileName, QString& report, QString& errorMessage);

/// Runs what asks this machine, while no recording answers for it. Any thread.
void askThisMachine(const std::function<void()>& ask);

} // namespace norvex::Viewer
