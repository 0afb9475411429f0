#include "machelpers/applicationServices.h"
#include "machelpers/errorStreamLinux.h"
#include "machelpers/privilegedToolLinux.h"
#include "systeminfo/mac/platform/live/caseSensitivity.h"
#include "systeminfo/mac/platform/live/desktopFiles.h"
#include "systeminfo/mac/platform/live/fileSystemQuery.h"
#include "systeminfo/mac/platform/live/kernelFiles.h"
#include "systeminfo/mac/platform/machine.h"

#include <QGuiApplication>
#include <QScreen>

#include <cerrno>
#include <filesystem>
#include <memory>
#include <system_error>

#include <dirent.h>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

namespace norvex {

namespace {

/// Whether a process has this number and has not ended. A thread's number is no process number. A process whose main
/// thread has ended looks like one that has ended, but has other threads.
bool isRunningProcess(std::int32_t process)
{
    const auto status = KernelFiles().contents("/proc/" + QByteArray::number(process) + "/status");
    if (!status || valueOfKey(*status, "Tgid", ':') != QByteArray::number(process)) {
        return false;
    }
    const QByteArray state = valueOfKey(*status, "State", ':').value_or(QByteArray());
    const int threads = valueOfKey(*status, "Threads", ':').value_or(QByteArray()).toInt();
    return (!state.startsWith('Z') && !state.startsWith('X')) || threads > 1;
}

/// The folder that holds this process's executable, or held it before an upgrade replaced it; empty when the system
/// does not tell.
QByteArray executablesFolder()
{
    // The link's text remains when the file is gone, with a word about that behind the name.
    std::error_code failure;
    const auto executable = std::filesystem::read_symlink("/proc/self/exe", failure);
    return QByteArray(executable.parent_path().c_str());
}

struct CloseFolder
{
    void operator()(DIR* folder) const { closedir(folder); }
};

class LinuxApplicationServices : public ApplicationServices
{
public:
    /// 10.6.0, the level of the interfaces that these services provide.
    std::int16_t gestalt(SystemVersionPart part, std::int32_t& value) override
    {
        value = part == SystemVersionPart::Major ? 10 : part == SystemVersionPart::Minor ? 6 : 0;
        return 0;
    }

    PlatformObject createPool() override { return nullptr; }
    void drainPool(PlatformObject) noexcept override {}

    /// This user's processes of the executable file that this process runs.
    std::vector<RunningApplication> runningInstances() override
    {
        std::vector<RunningApplication> instances;
        struct stat self = {};
        if (stat("/proc/self/exe", &self) != 0) {
            return instances;
        }
        const std::unique_ptr<DIR, CloseFolder> processes(opendir("/proc"));
        for (const dirent* entry = nullptr; processes && (entry = readdir(processes.get())) != nullptr;) {
            const QByteArray name(entry->d_name);
            const QByteArray folder = "/proc/" + name;
            const QByteArray file = folder + "/exe";
            const std::uint32_t number = name.toUInt(); // 0 for what is no process
            struct stat owner = {};
            struct stat executable = {};
            if (number != 0 && stat(folder.constData(), &owner) == 0 && owner.st_uid == geteuid() &&
                fileSystemsAnswer({file}) && stat(file.constData(), &executable) == 0 &&
                executable.st_dev == self.st_dev && executable.st_ino == self.st_ino) {
                instances.push_back(RunningApplication(number));
            }
        }
        return instances;
    }

    std::int32_t processIdentifier(RunningApplication application) override
    {
        return static_cast<std::int32_t>(application);
    }

    std::int32_t currentProcessIdentifier() override { return getpid(); }

    bool activate(RunningApplication) override { return false; }

    bool isApplicationRunning(std::int32_t processIdentifier) override
    {
        return processIdentifier > 0 && isRunningProcess(processIdentifier);
    }

    bool executableVolumeCaseSensitivity(int& value) override
    {
        const std::optional<CaseSensitivity> caseSensitivity = caseSensitivityOf(executablesFolder());
        value = caseSensitivity && caseSensitivity->isSensitive ? 1 : 0;
        return caseSensitivity.has_value();
    }

    const char* applicationPath(const char* identifier) override
    {
        static thread_local QByteArray path;
        const QByteArray name(identifier);
        auto found = desktopFilePath(name);
        if (!found) {
            found = desktopFilePath(name + ".desktop");
        }
        path = found.value_or(QByteArray());
        return found ? path.constData() : nullptr;
    }

    bool fileExists(const char* path) override { return currentMachine()->fileExists(path); }

    bool propertyListString(const char* path, const char* keyPath, std::string& text) override
    {
        const std::optional<QByteArray> found = currentMachine()->propertyListString(path, keyPath);
        if (!found) {
            return false;
        }
        text = found->constData(); // as a C string
        return true;
    }

    /// Asks nobody yet: pkexec does that when the tool starts.
    std::int32_t createAuthorization(PlatformObject& authorization) override
    {
        authorization = this;
        return geteuid() == 0 || privilegedLauncher() ? 0 : EACCES;
    }

    std::int32_t executeWithPrivileges(PlatformObject, const char* toolPath, char* const* arguments,
                                       ToolUse use) override
    {
        const char* launcher = geteuid() == 0 ? nullptr : privilegedLauncher();
        return startPrivilegedTool({launcher, toolPath, arguments, use});
    }

    void freeAuthorization(PlatformObject) noexcept override {}

    /// Linux slows no application down by itself, so there is nothing to prevent.
    bool canBeginActivity() override { return false; }
    bool canEndActivity() override { return false; }
    PlatformObject beginActivity(const char*) override { return nullptr; }
    void endActivity(PlatformObject) noexcept override {}
    void retain(PlatformObject) noexcept override {}
    void release(PlatformObject) noexcept override {}

    double mainScreenScaleFactor() override
    {
        const QScreen* screen = QGuiApplication::primaryScreen();
        return screen ? screen->devicePixelRatio() : 0.0;
    }

    void log(const char* message) override
    {
        syslog(LOG_USER | LOG_NOTICE, "%s", message);
        writeErrorLine(message);
    }
};

} // namespace

ApplicationServices& platformApplicationServices()
{
    static LinuxApplicationServices services;
    return services;
}

} // namespace norvex
