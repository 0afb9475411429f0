#include "systeminfo/mac/platform/live/fileSystemQuery.h"

#include "systeminfo/mac/platform/live/fileDescriptor.h"
#include "systeminfo/mac/platform/live/kernelFiles.h"
#include "systeminfo/mac/platform/live/servedMounts.h"

#include <QHash>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <climits>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <linux/fs.h>
#include <list>
#include <mutex>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <utility>
#include <vector>

namespace norvex {

namespace {

using Clock = std::chrono::steady_clock;

/// How long file systems that do not answer are waited for, all together.
constexpr std::chrono::milliseconds timeout(2000);
/// When an answer counts as late.
constexpr std::chrono::milliseconds usualTime(100);

/// What comes through a pipe, smaller than what a pipe takes whole.
struct Reply
{
    bool isFound = false;
    bool isFolder = false;
    bool foldsCase = false;
    struct statvfs64 figures = {};
    char descriptorInfo[256] = {}; ///< the file's text in /proc/self/fdinfo
};
static_assert(sizeof(Reply) <= PIPE_BUF);

using DescriptorPath = char[64];

void writeDescriptorPath(DescriptorPath& path, const char* folder, int descriptor)
{
    const std::size_t length = std::strlen(folder);
    std::memcpy(path, folder, length);
    *std::to_chars(path + length, path + sizeof path - 1, descriptor).ptr = '\0';
}

bool isFolder(int descriptor)
{
    struct stat64 status = {};
    return ::fstat64(descriptor, &status) == 0 && S_ISDIR(status.st_mode);
}

/// The folder of an open file.
FileDescriptor folderOf(int descriptor)
{
    DescriptorPath link;
    writeDescriptorPath(link, "/proc/self/fd/", descriptor);
    char path[PATH_MAX];
    const ssize_t length = ::readlink(link, path, sizeof path);
    ssize_t end = std::max<ssize_t>(length, 0);
    while (end > 0 && path[end - 1] != '/') {
        --end;
    }
    path[std::min<ssize_t>(end, sizeof path - 1)] = '\0';
    return FileDescriptor(::open(path, O_PATH | O_DIRECTORY | O_CLOEXEC));
}

bool foldsCase(int folder)
{
    const FileDescriptor readable(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC));
    unsigned int flags[2] = {}; // with room for the long that some file systems write
    return readable && ::ioctl(readable.get(), FS_IOC_GETFLAGS, flags) == 0 &&
           (flags[0] & FS_CASEFOLD_FL) != 0;
}

/// Looks at a path, however long that takes. It may run in a copy of a process that had threads, where whatever takes a
/// lock could wait for ever. So it calls nothing but the system, and closes all that it opens.
Reply lookAt(const char* path, Subject subject)
{
    Reply reply;
    // This names the file without opening what it holds.
    FileDescriptor file(::open(path, O_PATH | O_CLOEXEC));
    reply.isFolder = file && isFolder(file.get());
    if (file && subject == Subject::Folder) {
        if (!reply.isFolder) {
            file = folderOf(file.get());
        }
        reply.foldsCase = file && foldsCase(file.get());
    }
    if (!file || ::fstatvfs64(file.get(), &reply.figures) != 0) {
        return reply;
    }
    reply.isFound = true;
    DescriptorPath info;
    writeDescriptorPath(info, "/proc/self/fdinfo/", file.get());
    const FileDescriptor text(::open(info, O_RDONLY | O_CLOEXEC));
    if (!text || ::read(text.get(), reply.descriptorInfo, sizeof reply.descriptorInfo - 1) < 0) {
        reply.descriptorInfo[0] = '\0';
    }
    return reply;
}

/// Leaves a process only one descriptor. Others could keep somebody waiting for the end of a pipe.
void closeAllBut(int kept)
{
    const auto closeRange = [](unsigned first, unsigned last) {
        return first > last || ::syscall(SYS_close_range, first, last, 0) == 0;
    };
    const auto number = static_cast<unsigned>(kept);
    if (closeRange(0, number - 1) && closeRange(number + 1, ~0U)) {
        return;
    }
    // Linux before 5.9.
    for (int descriptor = 0; descriptor < ::sysconf(_SC_OPEN_MAX); ++descriptor) {
        if (descriptor != kept) {
            ::close(descriptor);
        }
    }
}

/// Looks at paths, one after the other, and answers about the last one.
/// @param paths with a null pointer at their end
[[noreturn]] void answerAndEnd(const char* const* paths, Subject subject, int answerTo)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    closeAllBut(answerTo);
    Reply reply;
    for (; *paths != nullptr; ++paths) {
        reply = lookAt(*paths, subject);
    }
    _exit(::write(answerTo, &reply, sizeof reply) == ssize_t(sizeof reply) ? 0 : 1);
}

/// A process that was started for a question.
struct AskedProcess
{
    QByteArray point;
    pid_t number = -1;
    bool isGivenUp = false;
};

bool hasEnded(const AskedProcess& process)
{
    return ::waitpid(process.number, nullptr, __WCLONE | WNOHANG) != 0;
}

/// All processes that were started and are not known to have ended.
class AskedProcesses
{
public:
    using Place = std::list<AskedProcess>::iterator;

    static AskedProcesses& instance()
    {
        // Never destroyed: another thread may ask while the process ends.
        static auto& processes = *new AskedProcesses;
        return processes;
    }

    Place add(const QByteArray& point)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        return processes_.insert(processes_.end(), {point});
    }

    void remove(Place process)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        processes_.erase(process);
    }

    void giveUp(Place process)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        process->isGivenUp = true;
    }

    /// Whether a process that was given up still asks the file system that is mounted at a point.
    bool isSilent(const QByteArray& point)
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        const auto asks = [&point](const AskedProcess& process) {
            return process.isGivenUp && process.point == point;
        };
        processes_.remove_if(
            [&asks](const AskedProcess& process) { return asks(process) && hasEnded(process); });
        return std::any_of(processes_.begin(), processes_.end(), asks);
    }

    /// Forgets all processes that were given up and have ended since.
    void removeEnded()
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        processes_.remove_if(
            [](const AskedProcess& process) { return process.isGivenUp && hasEnded(process); });
    }

private:
    std::mutex mutex_;
    std::list<AskedProcess> processes_;
};

/// What the processes that answer write into, and the caller reads from.
struct Pipe
{
    Pipe()
    {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) == 0) {
            from = FileDescriptor(ends[0]);
            to = FileDescriptor(ends[1]);
        }
    }

    FileDescriptor from;
    FileDescriptor to;
};

/// A question to the file system that is mounted at a point. Another process asks it.
class Question
{
public:
    Question(const QList<QByteArray>& paths, Subject subject, const QByteArray& point,
             const FileDescriptor& answerTo)
        : names_(namesOf(paths)), process_(AskedProcesses::instance().add(point))
    {
        if (!answerTo) {
            return;
        }
        // No handler of the caller's may run in the other process.
        sigset_t all;
        sigset_t before;
        sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &before);
        // Unlike fork() this calls no handlers, and the caller receives no signal and no wait status of an unknown child.
        process_->number = pid_t(::syscall(SYS_clone, 0, nullptr, nullptr, nullptr, nullptr));
        if (process_->number == 0) {
            answerAndEnd(names_.data(), subject, answerTo.get());
        }
        ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }

    Question(const Question&) = delete;
    Question& operator=(const Question&) = delete;

    ~Question()
    {
        if (isStarted() && isOver_) {
            ::waitpid(process_->number, nullptr, __WCLONE); // It has only to end.
        }
        if (isStarted() && !isOver_ && !hasEnded(*process_)) {
            AskedProcesses::instance().giveUp(process_);
        } else {
            AskedProcesses::instance().remove(process_);
        }
    }

    bool isStarted() const { return process_->number > 0; }
    /// The process has answered, or cannot any more.
    void setOver() { isOver_ = true; }

private:
    static std::vector<const char*> namesOf(const QList<QByteArray>& paths)
    {
        std::vector<const char*> names;
        for (const QByteArray& path : paths) {
            names.push_back(path.constData());
        }
        names.push_back(nullptr);
        return names;
    }

    const std::vector<const char*> names_; // for the other process, which must not ask for memory
    const AskedProcesses::Place process_;
    bool isOver_ = false;
};

/// Waits until then for an answer, or for the end of all that could give one.
bool waitForNews(const FileDescriptor& answerFrom, Clock::time_point end)
{
    int ready = 0;
    do {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        pollfd news = {answerFrom.get(), POLLIN, 0};
        ready = ::poll(&news, 1, int(std::max<decltype(left)>(left, 0)));
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}

std::optional<Reply> readReply(const FileDescriptor& answerFrom)
{
    Reply reply;
    return ::read(answerFrom.get(), &reply, sizeof reply) == ssize_t(sizeof reply) ? std::make_optional(reply)
                                                                                   : std::nullopt;
}

/// Finds out until then which file systems besides one are silent. They answer into a single pipe, so that their number
/// is not limited by that of the descriptors.
void askOthers(const QByteArray& point, const QList<QByteArray>& points, Clock::time_point end)
{
    AskedProcesses& processes = AskedProcesses::instance();
    Pipe pipe;
    std::list<Question> others;
    for (const QByteArray& other : points) {
        if (other != point && !processes.isSilent(other)) {
            others.emplace_back(QList<QByteArray>{other}, Subject::Path, other, pipe.to);
        }
    }
    pipe.to = FileDescriptor();
    while (pipe.from && waitForNews(pipe.from, end) && readReply(pipe.from)) {
    }
}

/// Asks the file system that is mounted at a point about paths on it.
/// @param points those of all served file systems
/// @return the reply about the last path
std::optional<Reply> askServed(const QList<QByteArray>& paths, Subject subject, const QByteArray& point,
                               const QList<QByteArray>& points)
{
    AskedProcesses& processes = AskedProcesses::instance();
    if (processes.isSilent(point)) {
        return std::nullopt;
    }
    processes.removeEnded();
    const auto start = Clock::now();
    Pipe pipe;
    Question question(paths, subject, point, pipe.to);
    pipe.to = FileDescriptor();
    if (!question.isStarted()) {
        return std::nullopt;
    }
    if (!waitForNews(pipe.from, start + usualTime)) {
        // Others may be silent, too. When the time is over, all of them are known.
        askOthers(point, points, start + timeout);
    }
    if (!waitForNews(pipe.from, start + timeout)) {
        return std::nullopt;
    }
    question.setOver();
    return readReply(pipe.from);
}

std::optional<Reply> ask(const QByteArray& path, Subject subject, const ServedMounts& mounts)
{
    const QByteArray point = mounts.pointOnWayTo(path);
    return point.isEmpty() ? lookAt(path.constData(), subject)
                           : askServed({path}, subject, point, mounts.points());
}

} // namespace

std::optional<FileSystemAnswer> askFileSystem(const QByteArray& path, Subject subject)
{
    const auto mounts = ServedMounts::current();
    const std::optional<Reply> reply = ask(path, subject, *mounts);
    if (!reply || !reply->isFound) {
        return std::nullopt;
    }
    FileSystemAnswer answer{reply->isFolder, reply->foldsCase, reply->figures, std::nullopt};
    if (const auto id = valueOfKey(reply->descriptorInfo, "mnt_id", ':')) {
        answer.mount = mountWithId(mounts->mountInfo(), *id);
        if (!answer.mount) { // The look has mounted it.
            answer.mount = mountWithId(mountInfo(), *id);
        }
    }
    return answer;
}

bool fileSystemsAnswer(const QList<QByteArray>& paths)
{
    const auto mounts = ServedMounts::current();
    QHash<QByteArray, QList<QByteArray>> pathsOfPoints;
    for (const QByteArray& path : paths) {
        const QByteArray point = mounts->pointOnWayTo(path);
        if (!point.isEmpty()) {
            pathsOfPoints[point].append(path);
        }
    }
    for (auto served = pathsOfPoints.begin(); served != pathsOfPoints.end(); ++served) {
        if (!askServed(*served, Subject::Path, served.key(), mounts->points())) {
            return false;
        }
    }
    return true;
}

} // namespace norvex
