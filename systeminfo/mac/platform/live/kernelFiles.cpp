#include "systeminfo/mac/platform/live/kernelFiles.h"

#include <fcntl.h>
#include <glob.h>
#include <unistd.h>

namespace norvex {

std::optional<QByteArray> KernelFiles::contents(const QByteArray& path, int limit) const
{
    const int file = ::open((root_ + path).constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return std::nullopt;
    }
    // The kernel's files have no size to ask for, and a read may end before they do.
    constexpr int chunk = 32 * 1024;
    QByteArray text;
    ssize_t count = 1;
    while (count > 0 && text.size() < limit) {
        const int size = text.size();
        text.resize(size + qMin(chunk, limit - size));
        count = ::read(file, text.data() + size, std::size_t(text.size() - size));
        text.resize(size + int(qMax(count, ssize_t(0))));
    }
    ::close(file);
    return count < 0 ? std::nullopt : std::make_optional(text);
}

std::optional<QByteArray> KernelFiles::line(const QByteArray& path) const
{
    const auto text = contents(path, 4096);
    if (!text) {
        return std::nullopt;
    }
    // A device tree's texts end with a zero byte.
    const QByteArray first = text->split('\n').first().split('\0').first().trimmed();
    return first.isEmpty() ? std::nullopt : std::make_optional(first);
}

std::optional<qint64> KernelFiles::number(const QByteArray& path) const
{
    const auto text = line(path);
    bool isNumber = false;
    const qint64 value = text ? text->toLongLong(&isNumber) : 0;
    return isNumber ? std::make_optional(value) : std::nullopt;
}

QList<QByteArray> KernelFiles::matching(const QByteArray& pattern) const
{
    glob_t found = {};
    QList<QByteArray> paths;
    if (::glob((root_ + pattern).constData(), 0, nullptr, &found) == 0) {
        for (std::size_t index = 0; index < found.gl_pathc; ++index) {
            paths.append(QByteArray(found.gl_pathv[index]).mid(root_.size()));
        }
    }
    ::globfree(&found);
    return paths;
}

std::optional<QByteArray> valueOfKey(const QByteArray& text, const QByteArray& key, char separator)
{
    for (int start = 0; start < text.size();) {
        const int end = text.indexOf('\n', start);
        const QByteArray entry = text.mid(start, end < 0 ? -1 : end - start);
        const int colon = entry.indexOf(separator);
        if (colon >= 0 && entry.left(colon).trimmed() == key) {
            return entry.mid(colon + 1).trimmed();
        }
        if (end < 0) {
            break;
        }
        start = end + 1;
    }
    return std::nullopt;
}

} // namespace norvex
