#pragma once

/// @file
/// What the application helpers need of the platform's application services. Each function is one small
/// question or order; what follows from the answers is decided by the helpers, which are the same everywhere.
///
/// No function throws but std::bad_alloc: a service that fails, or that the platform lacks, answers "not found".

#include <cstdint>
#include <string>
#include <vector>

namespace norvex {

/// The selectors of `Gestalt` for the parts of the system's version.
enum class SystemVersionPart : std::uint32_t {
    Major = 0x73797331,  ///< "sys1", gestaltSystemVersionMajor
    Minor = 0x73797332,  ///< "sys2", gestaltSystemVersionMinor
    BugFix = 0x73797333, ///< "sys3", gestaltSystemVersionBugFix
};

/// A running application in the platform's terms, valid while the pool is open in which it was obtained.
enum class RunningApplication : std::uintptr_t {};

/// Whether the caller waits for the tool that it starts, which is then its child, or leaves it to itself.
enum class ToolUse { Awaited, Detached };

/// An object of the platform, such as a pool, an activity or an authorization; null stands for none.
using PlatformObject = void*;

class ApplicationServices
{
public:
    ApplicationServices() = default;
    ApplicationServices(const ApplicationServices&) = delete;
    ApplicationServices& operator=(const ApplicationServices&) = delete;
    virtual ~ApplicationServices() = default;

    /// `Gestalt`: its 16-bit result, 0 for success, and the number in @p value then.
    virtual std::int16_t gestalt(SystemVersionPart part, std::int32_t& value) = 0;

    /// An autorelease pool on the calling thread.
    virtual PlatformObject createPool() = 0;
    virtual void drainPool(PlatformObject pool) = 0;

    /// All running applications with the application identifier of this process, this process included.
    virtual std::vector<RunningApplication> runningInstances() = 0;
    virtual std::int32_t processIdentifier(RunningApplication application) = 0;
    virtual std::int32_t currentProcessIdentifier() = 0;
    /// Brings an application to the front, whichever is active.
    /// @return false where this platform does not let one application activate another
    virtual bool activate(RunningApplication application) = 0;
    virtual bool isApplicationRunning(std::int32_t processIdentifier) = 0;

    /// Whether the volume of this application's executable supports case-sensitive names.
    /// @param value receives 1 for yes, on success
    virtual bool executableVolumeCaseSensitivity(int& value) = 0;
    /// The path of the application with this identifier, or null. The text lives in the caller's pool; where
    /// there are no pools, until the thread's next call.
    virtual const char* applicationPath(const char* identifier) = 0;

    /// Whether anything exists at a path.
    virtual bool fileExists(const char* path) = 0;
    /// The string at a key path of a dictionary property list.
    /// @return false when there is no string; @p text is then unchanged
    virtual bool propertyListString(const char* path, const char* keyPath, std::string& text) = 0;

    /// `AuthorizationCreate` for the right to run tools as administrator: its status, 0 for success.
    virtual std::int32_t createAuthorization(PlatformObject& authorization) = 0;
    /// `AuthorizationExecuteWithPrivileges`: its status, 0 when the tool was started.
    /// @param arguments null-terminated, without the tool's path
    virtual std::int32_t executeWithPrivileges(PlatformObject authorization, const char* toolPath,
                                               char* const* arguments, ToolUse use) = 0;
    /// `AuthorizationFree`, destroying the rights.
    virtual void freeAuthorization(PlatformObject authorization) = 0;

    virtual bool canBeginActivity() = 0;
    virtual bool canEndActivity() = 0;
    /// Begins a user-initiated activity, which keeps App Nap away.
    /// @return the activity, owned by the caller's pool, or null
    virtual PlatformObject beginActivity(const char* reason) = 0;
    virtual void endActivity(PlatformObject activity) = 0;
    virtual void retain(PlatformObject object) = 0;
    virtual void release(PlatformObject object) = 0;

    /// The backing scale factor of the main screen, 0.0 without one.
    virtual double mainScreenScaleFactor() = 0;
    /// Writes one line to the system log, as it is.
    virtual void log(const char* message) = 0;
};

/// The services in use: the platform's, unless a test has put its own in their place.
ApplicationServices& applicationServices();

/// Puts other services in place, null for the platform's. Not while a helper runs.
void setApplicationServices(ApplicationServices* services);

/// The platform's services: AppKit, Foundation and Authorization Services on macOS, what serves the same
/// purposes on Linux.
ApplicationServices& platformApplicationServices();

} // namespace norvex
