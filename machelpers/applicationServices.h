#pragma once

/// @file
/// What the application helpers need from the platform's application services. Each function asks or does one
/// thing. The helpers, which are the same everywhere, decide what follows from the answers.
///
/// A service that fails, or that the platform lacks, answers "not found". A function that is not noexcept may
/// throw std::bad_alloc; it has then done nothing and handed out nothing. The helpers catch it.

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

/// A running application in the platform's terms, valid while the pool in which you obtained it is open.
enum class RunningApplication : std::uintptr_t {};

/// Whether the caller waits for the tool that it starts. An awaited tool is the caller's child.
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

    /// `Gestalt`.
    /// @param value receives the number on success
    /// @return the call's 16-bit result, 0 for success
    virtual std::int16_t gestalt(SystemVersionPart part, std::int32_t& value) = 0;

    /// Opens an autorelease pool on the calling thread.
    virtual PlatformObject createPool() = 0;
    virtual void drainPool(PlatformObject pool) noexcept = 0;

    /// All running applications with the application identifier of this process, this process included.
    virtual std::vector<RunningApplication> runningInstances() = 0;
    virtual std::int32_t processIdentifier(RunningApplication application) = 0;
    virtual std::int32_t currentProcessIdentifier() = 0;
    /// Brings an application to the front, regardless of which application is active.
    /// @return false where the platform does not let one application activate another
    virtual bool activate(RunningApplication application) = 0;
    virtual bool isApplicationRunning(std::int32_t processIdentifier) = 0;

    /// Whether the volume of this application's executable supports case-sensitive names.
    /// @param value receives 1 for yes, on success
    virtual bool executableVolumeCaseSensitivity(int& value) = 0;
    /// The path of the application with this identifier, or null. The text lives in the caller's pool. Where
    /// there are no pools, it lives until the thread's next call.
    virtual const char* applicationPath(const char* identifier) = 0;

    /// Whether anything exists at a path.
    virtual bool fileExists(const char* path) = 0;
    /// The string at a key path of a dictionary property list.
    /// @return false when there is no string; @p text then keeps its value
    virtual bool propertyListString(const char* path, const char* keyPath, std::string& text) = 0;

    /// `AuthorizationCreate` for the right to run tools as administrator.
    /// @param authorization receives the authorization, or null
    /// @return the call's status, 0 for success
    virtual std::int32_t createAuthorization(PlatformObject& authorization) = 0;
    /// `AuthorizationExecuteWithPrivileges`.
    /// @param arguments null-terminated, without the tool's path
    /// @return the call's status, 0 when the tool runs
    virtual std::int32_t executeWithPrivileges(PlatformObject authorization, const char* toolPath,
                                               char* const* arguments, ToolUse use) = 0;
    /// `AuthorizationFree`. Destroys the rights.
    virtual void freeAuthorization(PlatformObject authorization) noexcept = 0;

    virtual bool canBeginActivity() = 0;
    virtual bool canEndActivity() = 0;
    /// Begins a user-initiated activity, which prevents App Nap.
    /// @return the activity, owned by the caller's pool, or null
    virtual PlatformObject beginActivity(const char* reason) = 0;
    virtual void endActivity(PlatformObject activity) noexcept = 0;
    virtual void retain(PlatformObject object) noexcept = 0;
    virtual void release(PlatformObject object) noexcept = 0;

    /// The backing scale factor of the main screen, 0.0 without one.
    virtual double mainScreenScaleFactor() = 0;
    /// Writes one line to the system log, as it is.
    virtual void log(const char* message) = 0;
};

/// The services in use: the platform's, unless a test has replaced them.
ApplicationServices& applicationServices();

/// Replaces the services. Do not call it while a helper runs.
/// @param services the new ones, which stay the caller's; null for the platform's
void setApplicationServices(ApplicationServices* services);

/// The platform's services: AppKit, Foundation and Authorization Services on macOS, their counterparts on
/// Linux.
ApplicationServices& platformApplicationServices();

} // namespace norvex
