#pragma once

/// @file
/// The kernel's view of the host as text files (/proc, /sys), and the bytes that `sysctlbyname` answers with.

#include <QByteArray>
#include <QList>

#include <optional>
#include <type_traits>

namespace norvex {

/// Reads the host's files below a folder, which is the root folder unless a test brings a host of its own.
class KernelFiles
{
public:
    explicit KernelFiles(const QByteArray& root = QByteArray()) : root_(root) {}

    /// What a file holds, at most @p limit bytes of it; absent when it cannot be read.
    std::optional<QByteArray> contents(const QByteArray& path, int limit = 16 * 1024 * 1024) const;
    /// A file's first line without the blanks and zero bytes around it; absent when nothing is left.
    std::optional<QByteArray> line(const QByteArray& path) const;
    /// The first line as a decimal number.
    std::optional<qint64> number(const QByteArray& path) const;
    /// The paths that match a pattern with a shell's wildcards, by name.
    QList<QByteArray> matching(const QByteArray& pattern) const;

private:
    QByteArray root_;
};

/// The value in the first line of @p text that reads "key", separator, value, with any blanks between them;
/// absent without such a line.
std::optional<QByteArray> valueOfKey(const QByteArray& text, const QByteArray& key, char separator);

/// A text as `sysctlbyname` copies it, with its zero byte.
inline QByteArray sysctlText(const QByteArray& text)
{
    return QByteArray(text).append('\0');
}

/// An integer, or a record of them, as `sysctlbyname` copies it.
template <typename Value>
QByteArray sysctlBytes(const Value& value)
{
    static_assert(std::is_trivially_copyable<Value>::value, "only plain values have bytes to copy");
    return QByteArray(reinterpret_cast<const char*>(&value), int(sizeof value));
}

} // namespace norvex
