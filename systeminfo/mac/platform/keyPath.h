#pragma once

/// @file
/// Key paths into property lists, in Foundation's form.

#include <QByteArray>
#include <QList>

namespace norvex {

/// The keys of a key path, outermost first: the texts between its dots.
///
/// A key may be empty, so the empty key path is one empty key, and a path that ends in a dot ends in an empty key.
/// @return an empty list for a path that cannot lead to a value: Foundation takes a key that begins with "@" for an
///         operator and never looks it up
QList<QByteArray> keysOf(const QByteArray& keyPath);

} // namespace norvex
