#pragma once

#include "../systeminfo/norvexExport.h"

/// @file
/// Application helpers: free functions for macOS applications, beside the report.
///
/// All texts are UTF-8 C strings. Call a function on any thread unless its description names one. Apart from
/// macLog, only a successful activation logs a line.
///
/// No function throws. A function that fails, or that gets no memory (std::bad_alloc), says so by its result
/// alone. On Linux libplist, behind getValueForKeyInPropertyList, ends the process when memory runs out.
///
/// On Linux the functions use that system's counterparts of the macOS services. Each description says what
/// differs. None leaves a thread behind. A file system of a server or of a program (NFS, FUSE) that does not answer for
/// 2 seconds counts as a failure there, but not to executeWithAuthorization, which waits as long as the file system
/// does. On macOS nothing limits that time.

/// @name App Nap
/// Both variables are zero at load. disableAppNap and enableAppNap write them without a lock, so do not run
/// these two concurrently.
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
/// NSActivityUserInitiated), during which the system does not slow the process down. It first ends an
/// activity that is already open, so there is never more than one.
/// @param reason why, for the system's own diagnostics; null counts as empty
///
/// Does nothing on systems without activities: macOS before 10.9, and Linux. activityTokenAvailable tells
/// afterwards whether an activity is open.
NORVEX_SYSTEMINFO_EXPORT void disableAppNap(const char* reason);

/// Ends the activity of disableAppNap (`-[NSProcessInfo endActivity:]`). Does nothing when none is open and
/// on systems without activities.
NORVEX_SYSTEMINFO_EXPORT void enableAppNap();

/// @}

/// @name Instances, processes and bundles
/// The functions whose names begin with "check" first read the system's version (`Gestalt`). They return false,
/// and ask nothing else, when they cannot read it, when the major number is below 10, or when the minor number
/// is below 6. They compare the two numbers separately, so macOS 11.2 gives false as well. On Linux the
/// version is always 10.6.0, the level of the interfaces that its services provide.
/// @{

/// Brings another running instance of this application to the front, if there is one.
/// @return true when another instance was found and activated; a line in the system log then says so
///
/// The instances are the running applications with this application's bundle identifier
/// (`NSRunningApplication`). The function activates the first of them with another process identifier,
/// regardless of which application is active.
///
/// On Linux the instances are this user's processes of the same executable file. One application cannot bring
/// another to the front there, so the result is always false, and no line is logged.
NORVEX_SYSTEMINFO_EXPORT bool checkIfApplicationIsAlreadyRunningThenActivate();

/// Whether a running application has this process identifier (`NSRunningApplication`).
/// @param processId the process identifier, as `getpid` gives it
/// @return false also when the query fails, and for 0 and numbers above INT_MAX, which no process has
///
/// On Linux every process that the kernel lists for the caller counts until its last thread ends. A thread's
/// number is no process identifier.
NORVEX_SYSTEMINFO_EXPORT bool checkIfProcessWithIdIsRunning(unsigned int processId);

/// Whether the volume that holds this application's executable has case-sensitive names
/// (`NSURLVolumeSupportsCaseSensitiveNamesKey`).
/// @return false also when the query fails
///
/// On Linux the answer comes from the executable's file system and from its folder, which may fold case. It
/// stays the same when another file takes the executable's place, as in an upgrade.
NORVEX_SYSTEMINFO_EXPORT bool checkVolumeCaseSensitiveForAppExecutableURL();

/// The absolute path of the application bundle with an identifier
/// (`-[NSWorkspace absolutePathForAppBundleWithIdentifier:]`). GUI thread.
/// @param bundleIdentifier such as "com.example.editor"
/// @return null when there is none, or for a null identifier. The platform owns the text: never free it. It
///        is valid until your current autorelease pool drains.
///
/// On Linux the identifier is a desktop file's, with or without ".desktop" ("org.kde.kate"), and the path is
/// the desktop file's. The text is valid until the thread's next call.
NORVEX_SYSTEMINFO_EXPORT const char* absolutePathForAppBundleWithIdentifier(const char* bundleIdentifier);

/// @}

/// Reads one string from a property-list file whose root is a dictionary (`NSDictionary`; on Linux XML and
/// binary property lists).
/// @param plistPath the file
/// @param keyPath keys separated by dots, which descend into nested dictionaries ("a.b.c")
/// @param buffer receives the zero-terminated value, as shown in the table
/// @param bufferSize the buffer's size in bytes, at least 1
/// @return 0, -1, -2 or -3:
///
/// | Result | Meaning | Buffer |
/// |---|---|---|
/// | 0 | found, and shorter than @p bufferSize bytes | the value |
/// | -1 | nothing exists at @p plistPath, or it is null | untouched |
/// | -2 | no string at the key path, or the file is no dictionary property list, or no memory | untouched |
/// | -3 | the value has @p bufferSize bytes or more | its first @p bufferSize - 1 bytes |
///
/// -3 cuts at a byte and may split a character. With a null buffer or a size below 1, a string gives -3 and the
/// buffer stays untouched. A path through a number, an array or another value that is no dictionary leads to
/// no value. On macOS key-value coding (`valueForKeyPath:`) decides there and knows a few properties of its
/// own.
///
/// On Linux files that are damaged, unreadable, not regular files, larger than 16 MiB or nested deeper than
/// 512 levels give -2, in bounded time and memory. So do XML files with entities other than
/// XML's five, or with a document type that has declarations.
/// libplist, which reads binary property lists, ends the process when memory runs out.
NORVEX_SYSTEMINFO_EXPORT int getValueForKeyInPropertyList(const char* plistPath, const char* keyPath,
                                                          char* buffer, int bufferSize);

/// Runs a tool with administrator rights, after the system has authorised the user (Authorization Services,
/// right "system.privilege.admin").
/// @param toolPath the tool's path; null gives false. No shell is involved.
/// @param arguments what the tool gets, unchanged: a null-terminated list without the tool's path; null for none
/// @param waitForExit whether to wait for the tool
/// @return true when the tool started and, with @p waitForExit, ended normally with exit code 0. False also
///        when the user cancels or is no administrator; the tool does not start then.
///
/// With @p waitForExit the function waits for any child of the process: if you have other children, the first
/// one to end decides the result. During the call `SIGCHLD` has its default action; afterwards your handler is
/// back with its flags and mask. So no other thread may wait for children or set a `SIGCHLD` handler
/// meanwhile. Without @p waitForExit the function leaves the handler alone.
///
/// The call blocks while the system asks the user. The tool inherits the standard streams.
///
/// On Linux:
/// - @p toolPath must be absolute, otherwise the result is false.
/// - A process that already runs as root starts the tool itself. Otherwise polkit's `pkexec` does, which asks
///   when the tool starts: refusal and cancellation (its exit codes 127 and 126) give false, with and without
///   @p waitForExit. Without it a tool that itself ends with one of these codes in its first moments counts as
///   refused.
/// - The tool gets no descriptors but the standard streams, and default actions for all signals. `pkexec` gives
///   it a minimal environment and root's home directory as current directory.
/// - Without @p waitForExit the tool is not your child: it leaves no zombie, and its end raises no `SIGCHLD`.
NORVEX_SYSTEMINFO_EXPORT bool executeWithAuthorization(const char* toolPath, char* const* arguments,
                                                       bool waitForExit);

/// The backing scale factor of the main screen (`NSScreen`), the one with the keyboard focus. GUI thread.
/// @return 1.0, 2.0 on a Retina display, 0.0 without a screen
///
/// On Linux the device pixel ratio of the primary screen (`QGuiApplication::primaryScreen`), 0.0 before the
/// application object exists.
NORVEX_SYSTEMINFO_EXPORT double macBackingScaleFactor();

/// Writes a line to the system log (`NSLog`; on Linux `syslog` and standard error).
/// @param message the text. Percent signs stay as they are. Null does nothing.
///
/// On macOS characters outside ASCII may be garbled in the log: NSLog reads the text in the system's legacy encoding
/// (`%s`).
///
/// On Linux the call waits up to 100 ms when the reader of standard error falls behind. What does not fit by then
/// reaches `syslog` alone. The call raises no `SIGPIPE`.
NORVEX_SYSTEMINFO_EXPORT void macLog(const char* message);
