#pragma once

#include <QByteArray>
#include <QList>

/// @file
/// Strings out of property-list files, XML and binary, on hosts without Foundation.

namespace norvex {

/// What a property list says about one key path.
struct PropertyListAnswer
{
    enum Outcome {
        NoFile,   ///< nothing exists at the path
        NoString, ///< something exists there, but it gives no string at the key path
        Found     ///< @c text is the string
    };

    Outcome outcome = NoFile;
    QByteArray text; ///< UTF-8, empty unless Found
};

/// The keys of a key path, outermost first: what stands between its dots. A key may be empty, so the empty
/// key path is one empty key and a trailing dot ends with one, as in Foundation. An empty list means that the
/// path names nothing in any dictionary: a key that begins with "@" is an operator there and never an entry.
QList<QByteArray> propertyListKeys(const QByteArray& keyPath);

/// A key path of which only the outcome matters, NoFile or NoString: the file is looked at, but not read.
extern const char* const propertyListNoKeyPath;

/// The string at @p keyPath of the property-list file @p path (symbolic links are followed).
///
/// The keys descend into nested dictionaries; a path through any other value gives NoString, and so does a
/// file that cannot be read, is not a regular file (a directory, a device, a FIFO; none of them is opened),
/// is no property list, is larger than 16 MiB, nests deeper than 512 levels or would unfold to more than
/// about 64 MiB of objects. Time and memory are bounded, whatever the file holds. A path that cannot be
/// looked up at all is NoFile.
PropertyListAnswer propertyListFileString(const QByteArray& path, const QByteArray& keyPath);

/// The same for the contents of a file: Found or NoString.
PropertyListAnswer propertyListString(const QByteArray& contents, const QByteArray& keyPath);

} // namespace norvex
