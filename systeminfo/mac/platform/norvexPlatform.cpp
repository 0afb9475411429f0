#include "systeminfo/mac/platform/norvexPlatform.h"

#include "systeminfo/boundedText.h"
#include "systeminfo/mac/platform/cfObjects.h"
#include "systeminfo/mac/platform/handles.h"
#include "systeminfo/mac/platform/machine.h"
#include "systeminfo/mac/platform/recorded/recordedMachine.h"

#include <QFile>

namespace norvex {

namespace {

const int longestReason = 120;

} // namespace

std::shared_ptr<const Machine> loadRecording(const QString& fileName, QString* errorMessage)
{
    QFile file(fileName);
    PropertyListFailure failure;
    std::shared_ptr<const Machine> machine;
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        failure.reason = file.errorString();
    } else {
        machine = readRecording(file, failure);
    }
    if (machine == nullptr && errorMessage != nullptr) {
        const QString line = failure.line == 0 ? QString() : QStringLiteral(":%1").arg(failure.line);
        *errorMessage = fileName + line + QLatin1String(": ") +
                        SystemInfo::Internal::boundedText(failure.reason, longestReason);
    }
    return machine;
}

unsigned int nextObject(unsigned int iterator)
{
    return IOIteratorNext(iterator);
}

void releaseObject(unsigned int object)
{
    IOObjectRelease(object);
}

LiveCounts liveCounts()
{
    LiveCounts counts;
    addLiveObjects(counts);
    addLiveHandles(counts);
    return counts;
}

} // namespace norvex
