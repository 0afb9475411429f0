#pragma once

#include <QByteArray>

#include <optional>

/// @file
/// Strings from property-list files, XML and binary, on systems without Foundation.

namespace norvex {

/// The string at @p keyPath of the property-list file @p path (symbolic links are followed), in UTF-8.
///
/// The keys descend into nested dictionaries, and the last of equal keys counts. There is no string behind a path
/// through any other value, nor in a file that cannot be read, is not a regular file (a directory, a device, a FIFO;
/// none of them is opened), is no property list, is larger than 16 MiB, nests values deeper than 512 levels or, in
/// binary form, would unfold to more than about 64 MiB of objects. Time and memory are bounded, whatever the file
/// holds. std::bad_alloc passes through; libplist, which reads the binary form, ends the process when memory runs out.
std::optional<QByteArray> propertyListFileString(const QByteArray& path, const QByteArray& keyPath);

/// The same for the contents of a file.
std::optional<QByteArray> propertyListString(const QByteArray& contents, const QByteArray& keyPath);

} // namespace norvex
