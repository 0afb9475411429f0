#include "machelpers/errorStreamLinux.h"

#include "systeminfo/mac/platform/live/fileDescriptor.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <string>

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace norvex {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto patience = std::chrono::milliseconds(100);

/// Keeps SIGPIPE away from the thread, and takes back the one that a write has raised.
class PipeSignalBlocker
{
public:
    PipeSignalBlocker()
    {
        sigemptyset(&pipeSignal_);
        sigaddset(&pipeSignal_, SIGPIPE);
        sigset_t pending;
        sigemptyset(&pending);
        sigpending(&pending);
        wasPending_ = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &pipeSignal_, &previous_);
    }
    PipeSignalBlocker(const PipeSignalBlocker&) = delete;
    PipeSignalBlocker& operator=(const PipeSignalBlocker&) = delete;
    ~PipeSignalBlocker()
    {
        constexpr timespec noWait = {};
        while (!wasPending_ && sigtimedwait(&pipeSignal_, nullptr, &noWait) == -1 && errno == EINTR) {
        }
        pthread_sigmask(SIG_SETMASK, &previous_, nullptr);
    }

private:
    sigset_t pipeSignal_ = {};
    sigset_t previous_ = {};
    bool wasPending_ = false;
};

/// A pipe or a terminal behind standard error, opened a second time so that writing to it does not block. To make the
/// descriptor itself non-blocking would change it for all processes that share it. None for a file, which never blocks
/// and has one position for all, for a socket, and where the rights are missing.
FileDescriptor nonBlockingErrorStream()
{
    struct stat status = {};
    const bool canBlock =
        fstat(STDERR_FILENO, &status) == 0 && (S_ISFIFO(status.st_mode) || S_ISCHR(status.st_mode));
    return FileDescriptor(canBlock ? open("/proc/self/fd/2", O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)
                                   : -1);
}

ssize_t writeSome(int descriptor, const char* text, std::size_t length)
{
    const ssize_t sent = send(descriptor, text, length, MSG_DONTWAIT | MSG_NOSIGNAL);
    return sent == -1 && errno == ENOTSOCK ? write(descriptor, text, length) : sent;
}

} // namespace

void writeErrorLine(const char* text)
{
    const std::string line = std::string(text) + '\n';
    const PipeSignalBlocker blocker;
    const FileDescriptor nonBlocking = nonBlockingErrorStream();
    const int stream = nonBlocking ? nonBlocking.get() : STDERR_FILENO;
    const Clock::time_point end = Clock::now() + patience;
    // One call is enough as a rule, so that the lines of several threads do not mix.
    for (std::size_t position = 0; position < line.size() && waitUntilReady(stream, POLLOUT, end);) {
        const ssize_t written = writeSome(stream, line.data() + position, line.size() - position);
        if (written > 0) {
            position += static_cast<std::size_t>(written);
        } else if ((errno != EAGAIN && errno != EINTR) || Clock::now() >= end) {
            return;
        }
    }
}

} // namespace norvex
