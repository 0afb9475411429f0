#include "tools/output.h"

#include "tools/exitStatus.h"

#include <QFile>
#include <QSaveFile>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace norvex::Tool {

namespace {

// The next file that opens would take the number of a closed stream. What takes it instead refuses the stream's use, so
// that writing the report to a closed standard output still fails.
void reserveStandardStreams()
{
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) == -1 && errno == EBADF) {
            const bool isInput = descriptor == STDIN_FILENO;
            (void)open(isInput ? "/dev/null" : "/", isInput ? O_WRONLY : O_RDONLY);
        }
    }
}

bool isSameFile(const struct stat& status, int descriptor)
{
    struct stat other;
    return fstat(descriptor, &other) == 0 && other.st_dev == status.st_dev && other.st_ino == status.st_ino;
}

// 0 or an errno.
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

int Output::writeToStandardOutput(const QByteArray& text) const
{
    return writeAndClose(STDOUT_FILENO, QStringLiteral("standard output"), text);
}

int Output::writeToFile(const QByteArray& fileName, const QByteArray& text) const
{
    const QString name = QFile::decodeName(fileName);
    const QString shownName = QStringLiteral("'%1'").arg(name);
    struct stat status;
    if (stat(fileName.constData(), &status) == 0 && !S_ISDIR(status.st_mode)) {
        // "/dev/stdout", whatever it leads to
        if (isSameFile(status, STDOUT_FILENO)) {
            return writeToStandardOutput(text);
        }
        if (!S_ISREG(status.st_mode)) {
            const int descriptor = open(fileName.constData(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
            return descriptor == -1 ? failedToWrite(shownName, reasonOf(errno))
                                    : writeAndClose(descriptor, shownName, text);
        }
    }
    QSaveFile file(name);
    if (!file.open(QIODevice::WriteOnly)) {
        return failedToWrite(shownName, file.errorString());
    }
    // QSaveFile's own buffer counts a partial write, as on a full disk, as success.
    if (const int error = writeAll(file.handle(), text)) {
        file.cancelWriting();
        return failedToWrite(shownName, reasonOf(error));
    }
    return file.commit() ? exitSuccess : failedToWrite(shownName, file.errorString());
}

int Output::writeAndClose(int descriptor, const QString& shownName, const QByteArray& text) const
{
    // Libraries that talk to services ignore the signal for the whole process.
    signal(SIGPIPE, pipeSignalAction_);
    int error = writeAll(descriptor, text);
    // Some file systems report only now that they could not store everything.
    if (close(descriptor) != 0 && error == 0 && errno != EINTR) {
        error = errno;
    }
    if (error == EPIPE) {
        return exitFailure;
    }
    return error == 0 ? exitSuccess : failedToWrite(shownName, reasonOf(error));
}

void printMessage(const QString& message)
{
    const QByteArray line = QStringLiteral("norvex-systeminfo: %1\n").arg(message).toLocal8Bit();
    (void)fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stderr);
}

} // namespace norvex::Tool
