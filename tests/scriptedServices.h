#pragma once

#include "machelpers/applicationServices.h"

#include <QStringList>

#include <csignal>
#include <functional>
#include <optional>

#include <unistd.h>

/// Services that give the answers that a test sets, record each call, and count what they hand out.
class ScriptedServices : public norvex::ApplicationServices
{
public:
    using Object = norvex::PlatformObject;
    using Application = norvex::RunningApplication;

    QStringList calls;
    std::function<void()> atEachCall; ///< of those that may throw; the calls are then not written down
    std::int32_t version[3] = {10, 6, 0};
    int failingVersion = -1;
    std::vector<Application> instances;
    bool canActivate = true;
    std::int32_t runningProcess = 0;
    int volumeValue = 1;
    bool volumeKnown = true;
    std::optional<std::string> string;
    int existing = -1; ///< after so many questions the file is gone
    std::int32_t authorizationError = 0;
    std::int32_t startError = 0;
    std::function<int()> child; ///< what the tool does; its result is the exit code
    bool offersBegin = true;
    bool offersEnd = true;
    quintptr nextActivity = 1;
    int openPools = 0;
    int openAuthorizations = 0;
    int openActivities = 0;
    int retained = 0;

    std::int16_t gestalt(norvex::SystemVersionPart part, std::int32_t& value) override
    {
        const int index = int(part) - int(norvex::SystemVersionPart::Major);
        value = version[index];
        return called("gestalt", index) && index == failingVersion ? -5551 : 0;
    }
    Object createPool() override { return asked(), ++openPools, this; }
    void drainPool(Object) noexcept override { --openPools; }
    std::vector<Application> runningInstances() override { return called("instances"), instances; }
    std::int32_t processIdentifier(Application application) override { return asked(), int(application); }
    std::int32_t currentProcessIdentifier() override { return called("current"), 7; }
    bool activate(Application other) override { return called("activate", int(other)) && canActivate; }
    bool isApplicationRunning(std::int32_t process) override
    {
        return called("running") && process == runningProcess;
    }
    bool executableVolumeCaseSensitivity(int& value) override
    {
        value = volumeValue;
        return called("volume") && volumeKnown;
    }
    const char* applicationPath(const char* identifier) override
    {
        return called("path") && qstrcmp(identifier, "known") == 0 ? "/path" : nullptr;
    }
    bool fileExists(const char* path) override
    {
        return asked(), qstrcmp(path, "missing") != 0 && existing-- != 0;
    }
    bool propertyListString(const char*, const char*, std::string& text) override
    {
        return asked(), text = string.value_or(""), string.has_value();
    }
    std::int32_t createAuthorization(Object& authorization) override
    {
        asked();
        ++openAuthorizations;
        authorization = this; // also where it is refused
        return authorizationError;
    }
    std::int32_t executeWithPrivileges(Object, const char*, char* const* arguments,
                                       norvex::ToolUse use) override
    {
        struct sigaction action = {};
        sigaction(SIGCHLD, nullptr, &action);
        called(use == norvex::ToolUse::Awaited ? "start awaited" : "start detached",
               action.sa_handler == SIG_DFL);
        if (startError == 0 && child && fork() == 0) {
            _exit(child());
        }
        return *arguments ? -1 : startError;
    }
    void freeAuthorization(Object) noexcept override { --openAuthorizations, note("free"); }
    bool canBeginActivity() override { return asked(), offersBegin; }
    bool canEndActivity() override { return asked(), offersEnd; }
    Object beginActivity(const char* reason) override
    {
        called(reason);
        openActivities += nextActivity != 0 ? 1 : 0;
        return reinterpret_cast<Object>(nextActivity); // NOLINT(performance-no-int-to-ptr): a token
    }
    void endActivity(Object activity) noexcept override
    {
        --openActivities, note("end", int(quintptr(activity)));
    }
    void retain(Object object) noexcept override { ++retained, note("retain", int(quintptr(object))); }
    void release(Object object) noexcept override { --retained, note("release", int(quintptr(object))); }
    double mainScreenScaleFactor() override { return asked(), 2.0; }
    void log(const char* message) override { called(message); }

private:
    void asked() const
    {
        if (atEachCall) {
            atEachCall();
        }
    }
    bool called(const char* what, int argument = -1)
    {
        asked();
        note(what, argument);
        return true;
    }
    /// Writes down a call, its argument if there is one, and whether a pool is open.
    void note(const char* what, int argument = -1)
    {
        if (!atEachCall) {
            calls << QLatin1String(what) +
                         (argument == -1 ? QString() : QStringLiteral(" %1").arg(argument)) +
                         QLatin1String(openPools ? "" : " outside");
        }
    }
};
