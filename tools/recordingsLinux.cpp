#include "tools/recordings.h"

#include "systeminfo/mac/platform/norvexPlatform.h"

#include <utility>

namespace norvex::Tool {

bool supportsRecordings()
{
    return true;
}

bool answerFromRecording(const QString& fileName, QString& errorMessage)
{
    auto machine = loadRecording(fileName, &errorMessage);
    if (!machine) {
        return false;
    }
    setMachine(std::move(machine));
    return true;
}

} // namespace norvex::Tool
