#pragma once

#include "systeminfo/privacy/byteHashes.h"

#include <QByteArray>
#include <QString>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace norvex::Privacy {

/// Byte sequences and their replacements. Replacing takes time in proportion to the text, however many and however long
/// the sequences are, unless hundreds of them begin one another. The memory is that of the sequences and replacements.
class Replacements
{
public:
    /// Where a sequence counts.
    enum class Where {
        Anywhere,
        Word,      ///< between characters that are neither letters nor digits
        Component, ///< as a whole text, or between the slashes of a path
        Folder     ///< as a name in a path: slashes, one at least, and the text's ends are around it
    };
    /// What upper and lower case mean.
    enum class Letters {
        Exact,
        Either,      ///< found in either case; the replacement stays as it is
        EachAsFound, ///< found in either case; each letter takes the case of the letter that it replaces
        AllAsFound   ///< found in either case; the replacement takes the case of the text found
    };

    /// A sequence keeps its first replacement.
    void add(const QByteArray& sequence, const QByteArray& replacement, Where where, Letters letters);

    /// The bytes with all sequences replaced, the longest where several begin.
    QByteArray replaced(const QByteArray& bytes) const;

    /// The same of a text, whatever it holds. Beyond ASCII a word ends at punctuation, too: in "Alice’s" and "“Alice”".
    QString replacedInText(const QString& text) const;

private:
    struct Target
    {
        std::size_t replacement = 0; ///< where it begins in bytes_
        int size = 0;                ///< of the replacement
        Where where = Where::Anywhere;
        Letters letters = Letters::Exact;
    };
    struct Found
    {
        const Target* target = nullptr;
        int length = 0;
    };

    // Bytes in the tree of all sequences: what several begin with or go on with, or the rest of one.
    struct Node
    {
        std::uint32_t child = 0;   ///< the first of the nodes that can follow, 0: none
        std::uint32_t sibling = 0; ///< the next node that can stand here; it begins with another byte
        std::uint32_t target = 0;  ///< index in targets_ of the sequence that ends here
        int size = 0;
        std::size_t begin = 0; ///< in bytes_
        char first = 0;        ///< of the bytes
        ByteHash hash = 0;     ///< of the bytes, if they are many
    };

    const char* bytesOf(const Node& node) const { return bytes_.data() + node.begin; }
    QByteArray replacementOf(const Target& target) const
    {
        return QByteArray(bytes_.data() + target.replacement, target.size);
    }
    std::size_t append(const char* bytes, int size);
    std::uint32_t nodeOf(const QByteArray& sequence, std::uint32_t root);
    std::uint32_t addBelow(std::uint32_t node, const QByteArray& sequence, int begin);
    void split(std::uint32_t node, int size);
    bool standsAt(const Node& node, const QByteArray& bytes, PartHashes& hashes, int start) const;
    Found longestFrom(std::uint32_t root, const QByteArray& bytes, PartHashes& hashes, int start) const;
    std::uint32_t nodeBelow(std::uint32_t node, char byte) const;

    // Exact sequences and folded ones have a root each.
    static constexpr std::uint32_t exactRoot = 0;
    static constexpr std::uint32_t foldedRoot = 1;
    std::vector<Node> nodes_ = std::vector<Node>(2);
    std::string bytes_; ///< of nodes and replacements: an object for each would take more than they do
    std::vector<Target> targets_ = std::vector<Target>(1); ///< the first stands for no replacement
    std::array<bool, 256> begins_ = {}; ///< whether any sequence begins with the folded byte
};

} // namespace norvex::Privacy
