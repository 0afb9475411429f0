#include "systeminfo/mac/platform/live/kernelFiles.h"

#include "systeminfo/mac/platform/live/fileDescriptor.h"

#include <fcntl.h>
#include <glob.h>
#include <unistd.h>

namespace norvex {

namespace {

/// Owns the paths that match a pattern.
class Glob
{
public:
    explicit Glob(const QByteArray& pattern)
    {
        // Where the search failed halfway, what it had found does not count.
        count_ = ::glob(pattern.constData(), 0, nullptr, &matches_) == 0 ? matches_.gl_pathc : 0;
    }
    Glob(const Glob&) = delete;
    Glob& operator=(const Glob&) = delete;
    ~Glob() { ::globfree(&matches_); }

    char** begin() const { return matches_.gl_pathv; }
    char** end() const { return matches_.gl_pathv + count_; }

private:
    glob_t matches_ = {};
    std::size_t count_ = 0;
};

} // namespace

std::optional<QByteArray> KernelFiles::contents(const QByteArray& path, int limit) const
{
    const FileDescriptor file(::open((root_ + path).constData(), O_RDONLY | O_CLOEXEC));
    if (!file) {
        return std::nullopt;
    }
    // The size of these files is not known in advance, and a read may return only a part of the rest.
    constexpr int chunk = 32 * 1024;
    QByteArray text;
    ssize_t count = 1;
    while (count > 0 && text.size() < limit) {
        const int size = text.size();
        text.resize(size + qMin(chunk, limit - size));
        count = ::read(file.get(), text.data() + size, std::size_t(text.size() - size));
        text.resize(size + int(qMax(count, ssize_t(0))));
    }
    return count < 0 ? std::nullopt : std::make_optional(text);
}

std::optional<QByteArray> KernelFiles::line(const QByteArray& path) const
{
    const auto text = contents(path, 4096);
    if (!text) {
        return std::nullopt;
    }
    // The texts of a device tree end with a zero byte.
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
    QList<QByteArray> paths;
    for (const char* path : Glob(root_ + pattern)) {
        paths.append(QByteArray(path).mid(root_.size()));
    }
    return paths;
}

std::optional<QByteArray> valueOfKey(const QByteArray& text, const QByteArray& key, char separator)
{
    for (int start = 0; start < text.size();) {
        const int end = text.indexOf('\n', start);
        const QByteArray entry = text.mid(start, end < 0 ? -1 : end - start);
        const int split = entry.indexOf(separator);
        if (split >= 0 && entry.left(split).trimmed() == key) {
            return entry.mid(split + 1).trimmed();
        }
        if (end < 0) {
            break;
        }
        start = end + 1;
    }
    return std::nullopt;
}

} // namespace norvex
