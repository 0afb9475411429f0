#pragma once

#include <QByteArray>

#include <cstddef>

/// @file
/// Protects libplist from hostile binary property lists: it recurses over what it reads and trusts the sizes in it.

namespace norvex {

constexpr std::size_t propertyListMaxDepth = 512;

/// Whether all objects of a binary property list lie within it, and whether libplist builds at most about 64 MiB and
/// propertyListMaxDepth levels from them. An object counts once for each reference to it, because libplist reads it as
/// often.
bool isAcceptableBinaryPropertyList(const QByteArray& contents);

} // namespace norvex
