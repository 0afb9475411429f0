#include "systeminfo/mac/platform/live/regularFile.h"

#include "systeminfo/mac/platform/live/fileDescriptor.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace norvex {

namespace {

constexpr off_t maxFileSize = off_t{16} * 1024 * 1024;

} // namespace

std::optional<QByteArray> regularFileContents(const QByteArray& path)
{
    struct stat status = {};
    // Opening a device can have effects, so nothing but a regular file is opened.
    if (stat(path.constData(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    // Another file may have taken its place since then, so opening must not block, and the type is checked again.
    const FileDescriptor file(open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_size > maxFileSize) {
        return std::nullopt;
    }
    QByteArray contents(static_cast<int>(status.st_size), Qt::Uninitialized);
    int length = 0;
    ssize_t got = 0;
    do {
        got = read(file.get(), contents.data() + length, static_cast<std::size_t>(contents.size() - length));
        length += got > 0 ? static_cast<int>(got) : 0;
    } while (got > 0 || (got == -1 && errno == EINTR));
    contents.truncate(length);
    return got == 0 ? std::make_optional(contents) : std::nullopt;
}

} // namespace norvex
