#include "tools/recordings.h"

namespace norvex::Tool {

bool supportsRecordings()
{
    return false;
}

bool answerFromRecording(const QString& fileName, QString& errorMessage)
{
    errorMessage = QStringLiteral("%1: this system answers for itself only").arg(fileName);
    return false;
}

} // namespace norvex::Tool
