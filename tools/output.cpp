#include "tools/output.h"

#include "tools/exitStatus.h"

#include "systeminfo/boundedText.h"

#include <QFile>
#include <QSaveFile>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace norvex::Tool {

namespace {

const int longestMessage = 200;

/// The next file that opens would take the number of a closed stream. What takes it instead refuses the stream's use, so
/// that writing the report to a closed standard output still fails.
void reserveStandardStreams()
{
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) == -1 && errno == EBADF) {
            const bool isInput = descriptor == STDIN_FILENO;
            (void)open(isInput ? "/dev/null" : "/", isInput ? O_WRONLY : O_RDONLY);
        }
    }
}

/// The folder of a file name, with its slash; empty without one.
QByteArray folderOf(const QByteArray& fileName)
{
    return fileName.left(fileName.lastIndexOf('/') + 1);
}

bool isFolderOfDescriptors(const QByteArray& folder)
{
    const std::unique_ptr<char, decltype(&free)> here(realpath(folder.constData(), nullptr), free);
    const std::unique_ptr<char, decltype(&free)> descriptors(realpath("/dev/fd", nullptr), free);
    if (!here || !descriptors) {
        return false;
    }
    // On Linux "/proc/PID/fd"; each thread shows the same as "/proc/PID/task/TID/fd".
    const QByteArray name = here.get();
    return name == descriptors.get() ||
           (name.startsWith(folderOf(descriptors.get()) + "task/") && name.endsWith("/fd"));
}

/// What a symbolic link leads to, as a name from the current folder; nothing for anything else.
std::optional<QByteArray> linkTarget(const QByteArray& fileName)
{
    char target[PATH_MAX];
    const ssize_t length = readlink(fileName.constData(), target, sizeof target);
    if (length <= 0) {
        return std::nullopt;
    }
    const QByteArray name(target, static_cast<int>(length));
    return name.startsWith('/') ? name : folderOf(fileName) + name;
}

/// The descriptor that a name such as "/dev/stderr" or "/dev/fd/3" stands for. Opening that name on Linux opens the file
/// behind it anew, from its start.
std::optional<int> namedDescriptor(const QByteArray& fileName)
{
    const int mostLinks = 40;
    QByteArray name = fileName;
    for (int i = 0; i < mostLinks; ++i) {
        const QByteArray folder = folderOf(name);
        bool isNumber = false;
        const int descriptor = name.mid(folder.size()).toInt(&isNumber);
        if (isNumber && !folder.isEmpty() && isFolderOfDescriptors(folder)) {
            return descriptor;
        }
        const std::optional<QByteArray> target = linkTarget(name);
        if (!target) {
            return std::nullopt;
        }
        name = *target;
    }
    return std::nullopt;
}

/// 0 or an errno.
int writeAll(int descriptor, const QByteArray& bytes)
{
    const char* next = bytes.constData();
    auto left = static_cast<size_t>(bytes.size());
    while (left > 0) {
        const ssize_t written = write(descriptor, next, left);
        if (written >= 0) {
            next += written;
            left -= static_cast<size_t>(written);
        } else if (errno == EAGAIN || errno == EWOULDBLOCK) {
            pollfd wait = {descriptor, POLLOUT, 0};
            (void)poll(&wait, 1, -1);
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

int failedToWrite(const QString& shownName, const QString& reason)
{
    printMessage(QStringLiteral("cannot write %1: %2").arg(shownName, reason));
    return exitFailure;
}

QString reasonOf(int errorNumber)
{
    return QString::fromLocal8Bit(strerror(errorNumber));
}

} // namespace

Output::Output() : pipeSignalAction_(signal(SIGPIPE, SIG_DFL))
{
    signal(SIGPIPE, pipeSignalAction_);
    // Writing beyond the user's limit for files then fails with an error instead of ending the process.
    signal(SIGXFSZ, SIG_IGN);
    reserveStandardStreams();
}

bool Output::open(const std::optional<QByteArray>& fileName)
{
    if (!fileName || *fileName == "-") {
        return true;
    }
    fileName_ = *fileName;
    shownName_ = QStringLiteral("'%1'").arg(QFile::decodeName(fileName_));
    const std::optional<int> named = namedDescriptor(fileName_);
    if (!named) {
        descriptor_ = -1;
        return true;
    }
    descriptor_ = *named;
    // The program's own files are not open yet.
    if (fcntl(descriptor_, F_GETFD) == -1) {
        failedToWrite(shownName_, reasonOf(errno));
        return false;
    }
    return true;
}

bool Output::isTerminal() const
{
    return descriptor_ != -1 && isatty(descriptor_) == 1;
}

int Output::write(const QByteArray& text) const
{
    if (descriptor_ != -1) {
        return writeAndClose(descriptor_, text);
    }
    struct stat status;
    if (stat(fileName_.constData(), &status) == 0 && !S_ISDIR(status.st_mode) && !S_ISREG(status.st_mode)) {
        const int descriptor = ::open(fileName_.constData(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
        return descriptor == -1 ? failedToWrite(shownName_, reasonOf(errno))
                                : writeAndClose(descriptor, text);
    }
    return replaceFile(text);
}

int Output::replaceFile(const QByteArray& text) const
{
    QSaveFile file(QFile::decodeName(fileName_));
    if (!file.open(QIODevice::WriteOnly)) {
        return failedToWrite(shownName_, file.errorString());
    }
    // QSaveFile's own buffer counts a partial write, as on a full disk, as success.
    if (const int error = writeAll(file.handle(), text)) {
        file.cancelWriting();
        return failedToWrite(shownName_, reasonOf(error));
    }
    return file.commit() ? exitSuccess : failedToWrite(shownName_, file.errorString());
}

int Output::writeAndClose(int descriptor, const QByteArray& text) const
{
    // Libraries that talk to services ignore the signal for the whole process.
    signal(SIGPIPE, pipeSignalAction_);
    int error = writeAll(descriptor, text);
    // Some file systems report only now that they could not store everything. A message about it needs standard error.
    const int closed = descriptor == STDERR_FILENO ? dup(descriptor) : descriptor;
    if (close(closed) != 0 && error == 0 && errno != EINTR) {
        error = errno;
    }
    if (error == EPIPE) {
        return exitFailure;
    }
    return error == 0 ? exitSuccess : failedToWrite(shownName_, reasonOf(error));
}

void printMessage(const QString& message)
{
    const QString line = QStringLiteral("norvex-systeminfo: ") + message;
    const QByteArray bytes = SystemInfo::Internal::boundedText(line, longestMessage).toLocal8Bit() + '\n';
    (void)fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stderr);
}

} // namespace norvex::Tool
