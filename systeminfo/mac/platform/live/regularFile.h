#pragma once

#include <QByteArray>

#include <optional>

namespace norvex {

/// The whole of a regular file of at most 16 MiB; symbolic links are followed. Absent when it cannot be read, is
/// larger, or is a directory, a device or a FIFO; none of those is opened.
std::optional<QByteArray> regularFileContents(const QByteArray& path);

} // namespace norvex
