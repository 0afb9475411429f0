#pragma once

#include <QByteArray>

#include <cstddef>

/// @file
/// What stands between a binary property list that anyone may have written and libplist, which recurses over what
/// it reads and trusts its sizes.

namespace norvex {

constexpr std::size_t propertyListMaxDepth = 512;

/// Whether all objects of a binary property list lie within it, end, and unfold to at most about 64 MiB and the
/// greatest depth. An object that several others refer to counts each time, because libplist reads it each time.
bool isAcceptableBinaryPropertyList(const QByteArray& contents);

} // namespace norvex
