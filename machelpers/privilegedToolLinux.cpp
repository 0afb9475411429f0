#include "machelpers/privilegedToolLinux.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

// Between a clone and its exec or _exit, a lock of another thread may stay locked forever: a child calls only
// async-signal-safe functions.

namespace norvex {

namespace {

constexpr int noSignal = 0;

/// fork() with a choice of the signal that the child's end raises. Without a signal, neither the program's
/// handlers nor its waits notice the child.
pid_t cloneProcess(int signalAtEnd)
{
    return static_cast<pid_t>(
        syscall(SYS_clone, static_cast<unsigned long>(signalAtEnd), nullptr, nullptr, nullptr, nullptr));
}

/// Waits for one child, of either kind. False when it cannot.
bool waitForChild(pid_t child, int& status, int options = 0)
{
    pid_t ended = 0;
    do {
        ended = waitpid(child, &status, __WALL | options);
    } while (ended == -1 && errno == EINTR);
    return ended == child;
}

/// Moves a descriptor out of the place of a standard stream, which a caller without one leaves free: what a child keeps
/// as its standard streams must not be a pipe's end. -1 when none is left.
int besideStandardStreams(int descriptor)
{
    if (descriptor > STDERR_FILENO) {
        return descriptor;
    }
    const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    close(descriptor);
    return moved;
}

struct Pipe
{
    int readEnd = -1;
    int writeEnd = -1;

    bool create()
    {
        std::array<int, 2> ends = {};
        if (pipe2(ends.data(), O_CLOEXEC) != 0) {
            return false;
        }
        readEnd = besideStandardStreams(ends[0]);
        writeEnd = besideStandardStreams(ends[1]);
        if (readEnd != -1 && writeEnd != -1) {
            return true;
        }
        close(readEnd);
        close(writeEnd);
        errno = EMFILE;
        return false;
    }
};

/// The error that the other end reports, 0 when all its holders close it without a report.
int readError(int readEnd)
{
    int error = 0;
    ssize_t got = 0;
    do {
        got = read(readEnd, &error, sizeof error);
    } while (got == -1 && errno == EINTR);
    return got == static_cast<ssize_t>(sizeof error) ? error : 0;
}

[[noreturn]] void reportAndExit(int writeEnd, int error)
{
    // So small a write succeeds at once. When nobody reads any more, it does not matter.
    const ssize_t written = write(writeEnd, &error, sizeof error);
    static_cast<void>(written);
    _exit(127);
}

/// The caller's handlers concern neither this process nor what it becomes.
void resetSignals()
{
    struct sigaction action = {};
    action.sa_handler = SIG_DFL;
    for (int number = 1; number < NSIG; ++number) {
        sigaction(number, &action, nullptr);
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

/// Closes all descriptors but the standard streams and one.
bool closeAllBut(int kept)
{
    const int folder = open("/proc/self/fd", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder == -1) {
        return false;
    }
    alignas(dirent64) std::array<char, 4096> entries = {};
    long length = 0;
    while ((length = syscall(SYS_getdents64, folder, entries.data(), entries.size())) > 0) {
        for (long position = 0; position < length;) {
            const char* start = entries.data() + position;
            const auto* entry = reinterpret_cast<const dirent64*>(start);
            int descriptor = 0;
            std::from_chars(entry->d_name, entry->d_name + std::strlen(entry->d_name), descriptor);
            if (descriptor > STDERR_FILENO && descriptor != folder && descriptor != kept) {
                close(descriptor);
            }
            position += entry->d_reclen;
        }
    }
    close(folder);
    return length == 0;
}

/// The first steps of a child process. It reports on the pipe.
void prepareChild(const Pipe& report)
{
    resetSignals();
    close(report.readEnd);
    if (!closeAllBut(report.writeEnd)) {
        reportAndExit(report.writeEnd, errno);
    }
}

[[noreturn]] void becomeTool(char* const* command, int reportEnd)
{
    execve(command[0], command, environ);
    reportAndExit(reportEnd, errno);
}

/// Whether a process is about to end, or does not let itself be examined.
bool mayBeExiting(pid_t process)
{
    constexpr unsigned long exitingFlag = 0x4; // PF_EXITING, set before a process closes its files
    constexpr int fieldOfFlags = 7;            // counted from the end of the name
    std::array<char, 64> path = {"/proc/"};
    char* end = std::to_chars(path.data() + 6, path.data() + 32, process).ptr;
    std::memcpy(end, "/stat", 6);
    const int file = open(path.data(), O_RDONLY | O_CLOEXEC);
    std::array<char, 512> text = {};
    const ssize_t length = file == -1 ? -1 : read(file, text.data(), text.size() - 1);
    close(file);
    const char* field = length > 0 ? std::strrchr(text.data(), ')') : nullptr;
    for (int index = 0; field && index < fieldOfFlags; ++index) {
        field = std::strchr(field + 1, ' ');
    }
    return !field || (std::strtoul(field + 1, nullptr, 10) & exitingFlag) != 0;
}

/// Whether a launcher that no longer holds its end of a pipe ended with a refusal, rather than became the
/// tool.
bool hasRefused(pid_t launcher)
{
    constexpr timespec pause = {0, 1'000'000};
    constexpr int pauses = 500;
    for (int count = 0; count < pauses; ++count) {
        int status = 0;
        if (waitForChild(launcher, status, WNOHANG)) {
            return WIFEXITED(status) && (WEXITSTATUS(status) == 126 || WEXITSTATUS(status) == 127);
        }
        if (!mayBeExiting(launcher)) {
            return false;
        }
        nanosleep(&pause, nullptr);
    }
    return false;
}

/// Runs in a process of its own: starts the launcher, and stays until it becomes the tool or ends. The
/// launcher inherits one end of a pipe and closes it at either moment.
[[noreturn]] void superviseLauncher(char* const* command, int reportEnd)
{
    Pipe held;
    if (!held.create()) {
        reportAndExit(reportEnd, errno);
    }
    const pid_t launcher = cloneProcess(SIGCHLD);
    if (launcher == -1) {
        reportAndExit(reportEnd, errno);
    }
    if (launcher == 0) {
        fcntl(held.writeEnd, F_SETFD, 0);
        becomeTool(command, reportEnd);
    }
    close(held.writeEnd);
    readError(held.readEnd);
    if (hasRefused(launcher)) {
        reportAndExit(reportEnd, EACCES);
    }
    _exit(0);
}

/// The process between the caller and a detached tool.
[[noreturn]] void startDetached(char* const* command, bool hasLauncher, int reportEnd)
{
    if (hasLauncher) {
        superviseLauncher(command, reportEnd);
    }
    const pid_t tool = cloneProcess(SIGCHLD);
    if (tool == -1) {
        reportAndExit(reportEnd, errno);
    }
    if (tool == 0) {
        becomeTool(command, reportEnd);
    }
    _exit(0);
}

std::vector<char*> commandFor(const PrivilegedTool& tool)
{
    std::vector<char*> command;
    if (tool.launcher) {
        command.push_back(const_cast<char*>(tool.launcher));
    }
    command.push_back(const_cast<char*>(tool.path));
    for (char* const* argument = tool.arguments; *argument; ++argument) {
        command.push_back(*argument);
    }
    command.push_back(nullptr);
    return command;
}

} // namespace

int startPrivilegedTool(const PrivilegedTool& tool)
{
    if (tool.path[0] != '/') {
        return EINVAL;
    }
    const std::vector<char*> command = commandFor(tool);
    const bool isAwaited = tool.use == ToolUse::Awaited;
    Pipe report;
    if (!report.create()) {
        return errno;
    }
    // No handler of the caller may run in the child.
    sigset_t all;
    sigset_t previous;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, &previous);
    const pid_t child = cloneProcess(isAwaited ? SIGCHLD : noSignal);
    const int cloneError = errno;
    if (child == 0) {
        prepareChild(report);
        if (isAwaited) {
            becomeTool(command.data(), report.writeEnd);
        }
        startDetached(command.data(), tool.launcher != nullptr, report.writeEnd);
    }
    pthread_sigmask(SIG_SETMASK, &previous, nullptr);
    close(report.writeEnd);
    const int error = child == -1 ? cloneError : readError(report.readEnd);
    close(report.readEnd);
    int status = 0;
    if (child != -1 && (error != 0 || !isAwaited)) {
        waitForChild(child, status);
    }
    return error;
}

const char* privilegedLauncher()
{
    for (const char* path : {"/usr/bin/pkexec", "/usr/local/bin/pkexec", "/run/wrappers/bin/pkexec"}) {
        if (access(path, X_OK) == 0) {
            return path;
        }
    }
    return nullptr;
}

} // namespace norvex
