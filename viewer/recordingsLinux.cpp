#include "viewer/recordings.h"

#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/mac/platform/norvexPlatform.h"

#include <mutex>

namespace norvex::Viewer {

namespace {

std::mutex& machineMutex()
{
    static std::mutex mutex;
    return mutex;
}

} // namespace

bool canReadRecordings()
{
    return true;
}

bool readRecording(const QString& fileName, QString& report, QString& errorMessage)
{
    struct ThisMachineAgain
    {
        ~ThisMachineAgain() { setMachine(nullptr); }
    };
    const std::shared_ptr<const Machine> machine = loadRecording(fileName, &errorMessage);
    if (machine == nullptr) {
        return false;
    }
    const std::lock_guard<std::mutex> lock(machineMutex());
    setMachine(machine);
    const ThisMachineAgain thisMachineAgain;
    report = SystemInfo::MacSysInfo::allInfos();
    return true;
}

void askThisMachine(const std::function<void()>& ask)
{
    const std::lock_guard<std::mutex> lock(machineMutex());
    ask();
}

} // namespace norvex::Viewer
