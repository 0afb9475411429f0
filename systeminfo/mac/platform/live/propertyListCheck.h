#pragma once

#include <QByteArray>

#include <cstdint>
#include <optional>
#include <string>

/// @file
/// What stands between a file that anyone may have written and libplist, which recurses over what it reads
/// and trusts its sizes.

namespace norvex {

constexpr std::int64_t propertyListMaxFileSize = std::int64_t{16} * 1024 * 1024;
constexpr std::size_t propertyListMaxDepth = 512;
/// libplist compares a new key of an XML dictionary with those before it that share its place in a hash
/// table, and keys can be made to. This is about a second's work; a dictionary of 14,000 keys stays below it.
constexpr std::uint64_t propertyListMaxKeyComparisons = 100'000'000;

/// The size of a property list in memory, as it unfolds. Each object costs something beside its text and
/// bytes.
class PropertyListBudget
{
public:
    /// @return false when the list has become too large
    bool spend(std::uint64_t bytes)
    {
        used_ += costOfObject + bytes;
        return used_ <= limit;
    }

private:
    static constexpr std::uint64_t costOfObject = 128;
    static constexpr std::uint64_t limit = std::uint64_t{64} * 1024 * 1024;
    std::uint64_t used_ = 0;
};

/// An XML property list as libplist reads it without surprises: in UTF-8, with elements and their texts only,
/// no deeper than the limit. Nothing when the file is not well-formed, has elements of another kind or is too
/// large.
std::optional<std::string> normalisedXmlPropertyList(const QByteArray& contents);

/// Whether all objects of a binary property list lie within it, end, and unfold to an acceptable size and
/// depth. An object that several others refer to counts each time, as it is then read.
bool isAcceptableBinaryPropertyList(const QByteArray& contents);

} // namespace norvex
