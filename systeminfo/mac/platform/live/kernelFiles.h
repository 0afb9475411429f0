#pragma once

/// @file
/// The text files in which the kernel describes the host: /proc and /sys.

#include <QByteArray>
#include <QList>

#include <optional>

namespace norvex {

/// Reads the kernel's files below a root folder: the host's own, or one that a test has made.
class KernelFiles
{
public:
    explicit KernelFiles(const QByteArray& root = QByteArray()) : root_(root) {}

    /// The first @p limit bytes of a file at most; absent when the file cannot be read.
    std::optional<QByteArray> contents(const QByteArray& path, int limit = 16 * 1024 * 1024) const;
    /// The first line of a file without the blanks and zero bytes around it; absent when nothing is left.
    std::optional<QByteArray> line(const QByteArray& path) const;
    /// The first line of a file as a decimal number; absent when it is not one.
    std::optional<qint64> number(const QByteArray& path) const;
    /// The paths that match a pattern with a shell's wildcards, sorted by name.
    QList<QByteArray> matching(const QByteArray& pattern) const;

private:
    QByteArray root_;
};

/// The value of a key in a text of lines like "key : value"; absent when no line has the key. The first such line
/// counts, and blanks around key and value do not.
std::optional<QByteArray> valueOfKey(const QByteArray& text, const QByteArray& key, char separator);

} // namespace norvex
