#pragma once

#include <QByteArray>

#include <cstdint>
#include <vector>

namespace norvex::Privacy {

/// A number that equal byte sequences share. Different ones share it so rarely, and each time by another chance, that
/// equal hashes count as equal bytes.
using ByteHash = std::uint64_t;

ByteHash hashOf(const char* bytes, int size);

/// The hash of the last bytes of a sequence.
/// @param size how many bytes these are
/// @param head the hash of the bytes before them
ByteHash hashOfTail(ByteHash whole, ByteHash head, int size);

/// The hashes of the parts of a text, each in constant time. The text outlives this object.
class PartHashes
{
public:
    explicit PartHashes(const QByteArray& text) : text_(text) {}

    /// The hash of the bytes from `begin` up to, but not including, `end`.
    ByteHash of(int begin, int end);

private:
    ByteHash ofHead(int size);

    const QByteArray& text_;
    std::vector<ByteHash> heads_ = {
        0}; ///< of every so many bytes from the text's begin, as many as were asked for
};

} // namespace norvex::Privacy
