#pragma once

#include "../systeminfo/norvexExport.h"

/// @file
/// Application helpers: free functions that a macOS application needs beside the report.
///
/// All texts are UTF-8 C strings. Nothing is thrown but std::bad_alloc; other failures are reported by the
/// results alone, and nothing is logged but the one line of a successful activation. Unless a function says otherwise, it may be called
/// on any thread.
///
/// On Linux the same functions exist over what the system has in their place; where that differs, the
/// function says so.

/// @name App Nap
/// Both variables are zero at load and written by disableAppNap and enableAppNap without a lock: do not run
/// those two concurrently.
/// @{

#ifdef __OBJC__
/// The activity of the last successful disableAppNap, retained by the library; nil before the first.
/// enableAppNap does not clear it: it is valid only while activityTokenAvailable is true. The type is `id`,
/// which C++ spells `struct objc_object*`.
extern NORVEX_SYSTEMINFO_EXPORT id activityToken;
#else
struct objc_object;
/// The activity of the last successful disableAppNap, retained by the library; null before the first.
/// enableAppNap does not clear it: it is valid only while activityTokenAvailable is true. Objective-C++ sees
/// it as `id`.
extern NORVEX_SYSTEMINFO_EXPORT struct objc_object* activityToken;
#endif

/// True from a successful disableAppNap until the enableAppNap that ends it.
extern NORVEX_SYSTEMINFO_EXPORT bool activityTokenAvailable;

/// Begins a user-initiated activity (`-[NSProcessInfo beginActivityWithOptions:reason:]`,
/// NSActivityUserInitiated), during which the system does not slow the process down. An activity that is open
/// already is ended first, so that there is never more than one.
/// @param reason why, for the system's own diagnostics; null counts as empty
///
/// Does nothing on systems without activities: macOS before 10.9, and Linux. When the system gives no
/// activity, activityTokenAvailable is false afterwards.
NORVEX_SYSTEMINFO_EXPORT void disableAppNap(const char* reason);

/// Ends the activity of disableAppNap (`-[NSProcessInfo endActivity:]`). Does nothing when none is open, or
/// on systems without activities.
NORVEX_SYSTEMINFO_EXPORT void enableAppNap();

/// @}

/// @name Instances, processes and bundles
/// The functions whose names begin with "check" read the system's version first (`Gestalt`) and give false,
/// touching nothing else, when it cannot be had, when the major number is below 10, or when the minor number
/// is below 6. The two numbers are looked at separately, so macOS 11.2 gives false as well. On Linux the
/// version is always 10.6.0, the level of these interfaces that its services provide.
/// @{

/// Brings another running instance of this application to the front, if there is one.
/// @return true when another instance was found and activated; a line in the system log then says so
///
/// The instances are the running applications with this application's bundle identifier
/// (`NSRunningApplication`); the first of them with another process identifier is activated, regardless of
/// which application is active.
///
/// On Linux the instances are this user's processes of the same executable file. One application cannot bring
/// another to the front there, so the result is always false and nothing is logged.
NORVEX_SYSTEMINFO_EXPORT bool checkIfApplicationIsAlreadyRunningThenActivate();

/// Whether a running application has this process identifier (`NSRunningApplication`).
/// @param processId the process identifier, as `getpid` gives it
/// @return false also when the query fails; 0 and numbers above INT_MAX belong to nobody
///
/// On Linux every process counts that the kernel lists to the caller and that has not ended; a thread's
/// number is no process identifier.
NORVEX_SYSTEMINFO_EXPORT bool checkIfProcessWithIdIsRunning(unsigned int processId);

/// Whether the volume that holds this application's executable tells upper from lower case in names
/// (`NSURLVolumeSupportsCaseSensitiveNamesKey`).
/// @return false also when the query fails
///
/// On Linux the executable's file system is asked, and whether its folder folds case.
NORVEX_SYSTEMINFO_EXPORT bool checkVolumeCaseSensitiveForAppExecutableURL();

/// The absolute path of the application bundle with an identifier
/// (`-[NSWorkspace absolutePathForAppBundleWithIdentifier:]`). GUI thread.
/// @param bundleIdentifier such as "com.example.editor"
/// @return null when there is none, or for a null identifier. The text belongs to the platform: it is valid
///        until the caller's current autorelease pool is drained, and never freed by the caller.
///
/// On Linux the identifier is a desktop file's, with or without ".desktop" ("org.kde.kate"), and the path is
/// the desktop file's (GIO); the text is valid until the thread's next call.
NORVEX_SYSTEMINFO_EXPORT const char* absolutePathForAppBundleWithIdentifier(const char* bundleIdentifier);

/// @}

/// Reads one string from a property-list file whose root is a dictionary (`NSDictionary`; on Linux XML and
/// binary property lists, the binary ones through libplist, which ends the process when it gets no memory).
/// @param plistPath the file
/// @param keyPath keys separated by dots, which descend into nested dictionaries ("a.b.c")
/// @param buffer receives the zero-terminated value, as the table says
/// @param bufferSize the buffer's size in bytes, at least 1
/// @return 0, -1, -2 or -3:
///
/// | Result | Meaning | Buffer |
/// |---|---|---|
/// | 0 | found, and shorter than @p bufferSize bytes | the value |
/// | -1 | nothing exists at @p plistPath, or it is null | untouched |
/// | -2 | no value at the key path, or no string, or the file is no dictionary property list | untouched |
/// | -3 | the value has @p bufferSize bytes or more | its first @p bufferSize - 1 bytes |
///
/// The cut of -3 is made at a byte and may split a character. A null buffer or a size below 1 gives -3 for a
/// string and stays untouched. A path through a number, an array or another value that is no dictionary has
/// no value; on macOS key-value coding (`valueForKeyPath:`) decides there and knows a few properties of its
/// own.
///
/// On Linux files that are damaged, unreadable, not regular files, larger than 16 MiB or nested deeper than
/// 512 levels give -2, in bounded time and memory. So do XML files that use entities or declare their own.
NORVEX_SYSTEMINFO_EXPORT int getValueForKeyInPropertyList(const char* plistPath, const char* keyPath,
                                                          char* buffer, int bufferSize);

/// Runs a tool with administrator rights, after the system has authorised the user (Authorization Services,
/// right "system.privilege.admin").
/// @param toolPath the tool's path. No shell is involved.
/// @param arguments null-terminated and passed on unchanged, without the tool's path; null stands for none
/// @param waitForExit whether to wait for the tool
/// @return true when the tool was started and, with @p waitForExit, ended normally with exit code 0. False
///        also for a user who cancels or is no administrator; the tool is not started then.
///
/// With @p waitForExit the wait is for any child of the process: if the caller has other children, the first
/// one to end decides the result. During the call `SIGCHLD` has its default action; the caller's handler is
/// put back afterwards with its flags and mask. So no other thread may wait for children or set a `SIGCHLD`
/// handler meanwhile. Without @p waitForExit the handler is not touched.
///
/// The call blocks while the user is asked. The tool inherits the standard streams.
///
/// On Linux:
/// - @p toolPath must be absolute, otherwise the result is false.
/// - A process that already runs as root starts the tool itself. Otherwise polkit's `pkexec` does, which asks
///   when the tool starts: refusal and cancellation (its exit codes 127 and 126) give false, whether or not
///   @p waitForExit is set. Without it a tool that itself ends with one of these codes in its first moments
///   is taken for a refusal.
/// - No other descriptor than the standard streams reaches the tool, and signals have their default actions
///   in it. `pkexec` gives it a minimal environment and the home directory of root as current directory.
/// - Without @p waitForExit the tool is not the caller's child: it leaves no zombie, and its end raises no
///   `SIGCHLD`.
NORVEX_SYSTEMINFO_EXPORT bool executeWithAuthorization(const char* toolPath, char* const* arguments,
                                                       bool waitForExit);

/// The backing scale factor of the main screen (`NSScreen`), the one with the keyboard focus. GUI thread.
/// @return 1.0, 2.0 on a Retina display, 0.0 without a screen
///
/// On Linux the device pixel ratio of the primary screen (`QGuiApplication::primaryScreen`), 0.0 before the
/// application object exists.
NORVEX_SYSTEMINFO_EXPORT double macBackingScaleFactor();

/// Writes a line to the system log (`NSLog`; on Linux `syslog` and standard error).
/// @param message the text; percent signs are written as they are, null is ignored
NORVEX_SYSTEMINFO_EXPORT void macLog(const char* message);
