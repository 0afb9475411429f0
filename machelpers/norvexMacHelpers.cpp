#include "machelpers/norvexMacHelpers.h"

#include "machelpers/applicationServices.h"
#include "machelpers/propertyListValue.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <exception>
#include <string>
#include <vector>

#include <sys/wait.h>

struct objc_object* activityToken = nullptr;
bool activityTokenAvailable = false;

namespace {

using norvex::ApplicationServices;
using norvex::applicationServices;
using norvex::PlatformObject;
using norvex::RunningApplication;
using norvex::SystemVersionPart;
using norvex::ToolUse;

/// The result of a call, or @p failed when the call throws, as it does when memory runs out.
template <typename Result, typename Call>
Result guarded(Result failed, Call call)
{
    try {
        return call();
    } catch (const std::exception&) {
        return failed;
    }
}

/// A call without a result.
template <typename Call>
void guarded(Call call)
{
    try {
        call();
    } catch (const std::exception&) {
        return;
    }
}

/// Keeps alive what a call obtains from the platform.
class AutoreleasePool
{
public:
    explicit AutoreleasePool(ApplicationServices& services)
        : services_(services), pool_(services.createPool())
    {}
    AutoreleasePool(const AutoreleasePool&) = delete;
    AutoreleasePool& operator=(const AutoreleasePool&) = delete;
    ~AutoreleasePool() { services_.drainPool(pool_); }

private:
    ApplicationServices& services_;
    PlatformObject pool_;
};

/// Owns an authorization and its rights.
class Authorization
{
public:
    explicit Authorization(ApplicationServices& services)
        : services_(services), status_(services.createAuthorization(authorization_))
    {}
    Authorization(const Authorization&) = delete;
    Authorization& operator=(const Authorization&) = delete;
    ~Authorization()
    {
        if (authorization_) {
            services_.freeAuthorization(authorization_);
        }
    }

    bool isGranted() const { return status_ == 0; }
    bool start(const char* toolPath, char* const* arguments, ToolUse use)
    {
        return services_.executeWithPrivileges(authorization_, toolPath, arguments, use) == 0;
    }

private:
    ApplicationServices& services_;
    PlatformObject authorization_ = nullptr;
    std::int32_t status_;
};

/// Sets the default action for ended children, so that they stay until someone waits for them. Uses sigaction,
/// because signal() loses the flags and the mask of the handler that comes back.
class DefaultChildSignal
{
public:
    DefaultChildSignal()
    {
        struct sigaction action = {};
        action.sa_handler = SIG_DFL;
        changed_ = sigaction(SIGCHLD, &action, &previous_) == 0;
    }
    DefaultChildSignal(const DefaultChildSignal&) = delete;
    DefaultChildSignal& operator=(const DefaultChildSignal&) = delete;
    ~DefaultChildSignal()
    {
        if (changed_) {
            sigaction(SIGCHLD, &previous_, nullptr);
        }
    }

private:
    struct sigaction previous_ = {};
    bool changed_ = false;
};

/// The check functions use interfaces that came with 10.6. Each number has a bound of its own.
bool isSystemRecentEnough(ApplicationServices& services)
{
    const auto number = [&services](SystemVersionPart part) {
        std::int32_t value = 0;
        return services.gestalt(part, value) == 0 ? value : 0;
    };
    const std::int32_t major = number(SystemVersionPart::Major);
    const std::int32_t minor = number(SystemVersionPart::Minor);
    number(SystemVersionPart::BugFix);
    return major >= 10 && minor >= 6;
}

bool activateOtherInstance(ApplicationServices& services)
{
    const AutoreleasePool pool(services);
    const std::vector<RunningApplication> instances = services.runningInstances();
    if (instances.size() < 2) {
        return false;
    }
    for (const RunningApplication instance : instances) {
        if (services.processIdentifier(instance) != services.currentProcessIdentifier()) {
            return services.activate(instance);
        }
    }
    return false;
}

/// Waits for any child, even when signal handlers interrupt the wait.
bool childEndsWithSuccess()
{
    int status = 0;
    pid_t child = 0;
    do {
        child = wait(&status);
    } while (child == -1 && errno == EINTR);
    // A normal exit with code 0. The bit between the two stands for a core dump and does not count.
    return child != -1 && (status & 0xff7f) == 0;
}

bool runAsAdministrator(const char* toolPath, char* const* arguments, bool waitForExit)
{
    Authorization authorization(applicationServices());
    if (!authorization.isGranted()) {
        return false;
    }
    if (!waitForExit) {
        return authorization.start(toolPath, arguments, ToolUse::Detached);
    }
    const DefaultChildSignal defaultChildSignal;
    return authorization.start(toolPath, arguments, ToolUse::Awaited) && childEndsWithSuccess();
}

void endOpenActivity(ApplicationServices& services)
{
    if (!activityTokenAvailable || !services.canEndActivity()) {
        return;
    }
    services.endActivity(activityToken);
    services.release(activityToken);
    activityTokenAvailable = false;
}

void beginOnlyActivity(ApplicationServices& services, const char* reason)
{
    if (!services.canBeginActivity()) {
        return;
    }
    endOpenActivity(services);
    const PlatformObject activity = services.beginActivity(reason);
    if (activity) {
        services.retain(activity);
        activityToken = static_cast<struct objc_object*>(activity);
        activityTokenAvailable = true;
    }
}

} // namespace

namespace norvex {

PropertyListResult propertyListValue(const char* plistPath, const char* keyPath, char* buffer, int bufferSize)
{
    ApplicationServices& services = applicationServices();
    const AutoreleasePool pool(services);
    if (!plistPath || !services.fileExists(plistPath)) {
        return PropertyListResult::NoFile;
    }
    std::string value;
    if (!keyPath || !services.propertyListString(plistPath, keyPath, value)) {
        return PropertyListResult::NoString;
    }
    if (!buffer || bufferSize < 1) {
        return PropertyListResult::BufferTooSmall;
    }
    const auto size = static_cast<std::size_t>(bufferSize);
    const bool fits = value.size() < size;
    const std::size_t length = fits ? value.size() : size - 1;
    std::memcpy(buffer, value.data(), length);
    buffer[length] = '\0';
    return fits ? PropertyListResult::Found : PropertyListResult::BufferTooSmall;
}

} // namespace norvex

bool checkIfApplicationIsAlreadyRunningThenActivate()
{
    ApplicationServices& services = applicationServices();
    const bool isActivated =
        guarded(false, [&] { return isSystemRecentEnough(services) && activateOtherInstance(services); });
    if (isActivated) {
        guarded([&] { services.log("Activated other app =1"); });
    }
    return isActivated;
}

bool checkIfProcessWithIdIsRunning(unsigned int processId)
{
    return guarded(false, [processId] {
        ApplicationServices& services = applicationServices();
        const bool isPossible = processId != 0 && processId <= static_cast<unsigned int>(INT_MAX);
        if (!isSystemRecentEnough(services) || !isPossible) {
            return false;
        }
        const AutoreleasePool pool(services);
        return services.isApplicationRunning(static_cast<std::int32_t>(processId));
    });
}

bool checkVolumeCaseSensitiveForAppExecutableURL()
{
    return guarded(false, [] {
        ApplicationServices& services = applicationServices();
        if (!isSystemRecentEnough(services)) {
            return false;
        }
        const AutoreleasePool pool(services);
        int value = 0;
        return services.executableVolumeCaseSensitivity(value) && value == 1;
    });
}

const char* absolutePathForAppBundleWithIdentifier(const char* bundleIdentifier)
{
    // No pool: the result lives in the caller's.
    return guarded(static_cast<const char*>(nullptr), [bundleIdentifier] {
        return bundleIdentifier ? applicationServices().applicationPath(bundleIdentifier) : nullptr;
    });
}

int getValueForKeyInPropertyList(const char* plistPath, const char* keyPath, char* buffer, int bufferSize)
{
    // Running out of memory does not mean that there is no file.
    return static_cast<int>(guarded(norvex::PropertyListResult::NoString, [&] {
        return norvex::propertyListValue(plistPath, keyPath, buffer, bufferSize);
    }));
}

bool executeWithAuthorization(const char* toolPath, char* const* arguments, bool waitForExit)
{
    static char* const noArguments[] = {nullptr};
    return toolPath && guarded(false, [&] {
               return runAsAdministrator(toolPath, arguments ? arguments : noArguments, waitForExit);
           });
}

void disableAppNap(const char* reason)
{
    guarded([reason] {
        ApplicationServices& services = applicationServices();
        const AutoreleasePool pool(services);
        beginOnlyActivity(services, reason ? reason : "");
    });
}

void enableAppNap()
{
    guarded([] {
        ApplicationServices& services = applicationServices();
        const AutoreleasePool pool(services);
        endOpenActivity(services);
    });
}

double macBackingScaleFactor()
{
    return guarded(0.0, [] {
        ApplicationServices& services = applicationServices();
        const AutoreleasePool pool(services);
        return services.mainScreenScaleFactor();
    });
}

void macLog(const char* message)
{
    guarded([message] {
        ApplicationServices& services = applicationServices();
        const AutoreleasePool pool(services);
        if (message) {
            services.log(message);
        }
    });
}
