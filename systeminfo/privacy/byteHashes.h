#pragma once

#include <QByteArray>

#include <cstddef>
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

/// Values by hash, in half the memory of a QHash: a text may hold millions of private values.
template <typename Value>
class HashTable
{
public:
    bool isEmpty() const { return count_ == 0; }

    /// Null when there is none.
    const Value* find(ByteHash hash) const
    {
        if (slots_.empty()) {
            return nullptr;
        }
        const Slot& slot = slots_[place(hash)];
        return slot.key == 0 ? nullptr : &slot.value;
    }

    /// A hash keeps its first value.
    void insert(ByteHash hash, const Value& value)
    {
        if (count_ >= slots_.size() / 8 * 7) {
            grow();
        }
        Slot& slot = slots_[place(hash)];
        if (slot.key == 0) {
            slot = {keyOf(hash), value};
            ++count_;
        }
    }

private:
    struct Slot
    {
        ByteHash key = 0; ///< 0: the slot is free
        Value value = {};
    };

    static ByteHash keyOf(ByteHash hash) { return hash | ByteHash(1) << 63; }

    /// Where the hash is, or could be.
    std::size_t place(ByteHash hash) const
    {
        constexpr ByteHash spreading = 0x9e3779b97f4a7c15;
        const std::size_t last = slots_.size() - 1; // a power of two less one
        std::size_t place = static_cast<std::size_t>((hash * spreading) >> 32) & last;
        while (slots_[place].key != 0 && slots_[place].key != keyOf(hash)) {
            place = (place + 1) & last;
        }
        return place;
    }

    void grow()
    {
        constexpr std::size_t fewest = 16;
        HashTable larger;
        larger.slots_.resize(slots_.empty() ? fewest : 2 * slots_.size());
        for (const Slot& slot : slots_) {
            if (slot.key != 0) {
                larger.slots_[larger.place(slot.key & ~(ByteHash(1) << 63))] = slot;
            }
        }
        slots_.swap(larger.slots_);
    }

    std::vector<Slot> slots_;
    std::size_t count_ = 0;
};

} // namespace norvex::Privacy
