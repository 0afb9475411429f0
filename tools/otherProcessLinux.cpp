#include "tools/otherProcessLinux.h"

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace norvex::Tool {

namespace {

const char answerEnd = '\0';

[[noreturn]] void runAndEnd(OtherProcess::Work work, int answerTo, pid_t tool)
{
    // A failure leaves no core file, and nothing outlives the tool, which may have ended before it could be watched.
    prctl(PR_SET_DUMPABLE, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != tool) {
        _exit(1);
    }
    try {
        work(answerTo);
    } catch (...) {
        // The caller misses the end of the answer.
    }
    _exit(1);
}

int millisecondsUntil(std::chrono::steady_clock::time_point deadline)
{
    using namespace std::chrono;
    const auto left = duration_cast<milliseconds>(deadline - steady_clock::now()).count();
    return static_cast<int>(std::max<milliseconds::rep>(left, 0));
}

} // namespace

OtherProcess::OtherProcess(Work work)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        return;
    }
    const pid_t tool = getpid();
    process_ = fork();
    if (process_ == 0) {
        runAndEnd(work, ends[1], tool);
    }
    close(ends[1]);
    answerFrom_ = ends[0];
}

OtherProcess::~OtherProcess()
{
    if (process_ > 0) {
        kill(process_, SIGKILL);
        // One that waits for a silent file system cannot end: it is left to the system.
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(100);
        while (waitpid(process_, nullptr, WNOHANG) == 0 && millisecondsUntil(deadline) > 0) {
            poll(nullptr, 0, 1);
        }
    }
    if (answerFrom_ != -1) {
        close(answerFrom_);
    }
}

OtherProcess::Result OtherProcess::wait(std::chrono::steady_clock::time_point deadline, QByteArray& answer)
{
    if (process_ <= 0) {
        return Result::NotStarted;
    }
    QByteArray bytes;
    pollfd news = {answerFrom_, POLLIN, 0};
    while (!bytes.endsWith(answerEnd)) {
        const int ready = poll(&news, 1, millisecondsUntil(deadline));
        if (ready == 0) {
            return Result::Silent;
        }
        if (ready < 0) {
            continue; // a signal
        }
        char chunk[4096];
        const ssize_t count = read(answerFrom_, chunk, sizeof chunk);
        if (count <= 0) {
            return Result::Failed;
        }
        bytes.append(chunk, static_cast<int>(count));
    }
    bytes.chop(1);
    answer = bytes;
    return Result::Answered;
}

void OtherProcess::giveAnswer(int answerTo, const QByteArray& answer)
{
    const QByteArray bytes = answer + answerEnd;
    int written = 0;
    while (written < bytes.size()) {
        const ssize_t count =
            write(answerTo, bytes.constData() + written, static_cast<size_t>(bytes.size() - written));
        if (count < 0) {
            _exit(1);
        }
        written += static_cast<int>(count);
    }
    while (true) {
        pause();
    }
}

} // namespace norvex::Tool
