#include "systeminfo/mac/platform/live/propertyListCheck.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace norvex {

namespace {

/// Adds up the memory that libplist needs for a property list. Each object takes some beside its content.
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

/// Walks over the objects of a binary property list in the order in which they are read.
class BinaryWalk
{
public:
    explicit BinaryWalk(const QByteArray& contents)
        : bytes_(reinterpret_cast<const unsigned char*>(contents.constData())),
          size_(static_cast<std::uint64_t>(contents.size()))
    {}

    bool run()
    {
        if (!readTrailer() || !visit(root_)) {
            return false;
        }
        while (!open_.empty()) {
            References& references = open_.back();
            if (references.count == 0) {
                open_.pop_back();
                continue;
            }
            const std::uint64_t object = number(references.position, referenceSize_);
            references.position += referenceSize_;
            --references.count;
            if (!visit(object)) {
                return false;
            }
        }
        return true;
    }

private:
    /// What is left to visit of a container.
    struct References
    {
        std::uint64_t position;
        std::uint64_t count;
    };

    /// The big-endian number of so many bytes, all of which must be inside.
    std::uint64_t number(std::uint64_t position, std::uint64_t length) const
    {
        std::uint64_t value = 0;
        for (std::uint64_t index = 0; index < length; ++index) {
            value = value << 8 | bytes_[position + index];
        }
        return value;
    }

    bool readTrailer()
    {
        constexpr std::uint64_t headerSize = 8;
        constexpr std::uint64_t trailerSize = 32;
        if (size_ < headerSize + trailerSize) {
            return false;
        }
        const std::uint64_t trailer = size_ - trailerSize;
        offsetSize_ = bytes_[trailer + 6];
        referenceSize_ = bytes_[trailer + 7];
        objectCount_ = number(trailer + 8, 8);
        root_ = number(trailer + 16, 8);
        offsetTable_ = number(trailer + 24, 8);
        return offsetSize_ >= 1 && offsetSize_ <= 8 && referenceSize_ >= 1 && referenceSize_ <= 8 &&
               offsetTable_ >= headerSize && offsetTable_ <= trailer &&
               objectCount_ <= (trailer - offsetTable_) / offsetSize_;
    }

    /// Checks one object, and opens it when it is a container.
    bool visit(std::uint64_t object)
    {
        if (object >= objectCount_) {
            return false;
        }
        std::uint64_t position = number(offsetTable_ + object * offsetSize_, offsetSize_);
        if (position < 8 || position >= offsetTable_) {
            return false;
        }
        const unsigned int marker = bytes_[position++];
        std::uint64_t count = marker & 0x0fU;
        const unsigned int kind = marker >> 4;
        const bool isCounted =
            kind == Data || kind == Ascii || kind == Utf16 || kind == Array || kind == Dictionary;
        if (isCounted && count == 0x0f && !readCount(position, count)) {
            return false;
        }
        const std::optional<std::uint64_t> unit = unitSize(kind, count);
        if (!unit || count > (offsetTable_ - position) / *unit || !budget_.spend(count * *unit)) {
            return false;
        }
        if (kind == Array || kind == Dictionary) {
            open_.push_back({position, kind == Dictionary ? 2 * count : count});
        }
        return open_.size() <= propertyListMaxDepth;
    }

    /// The count of an object that has too many items for its marker.
    bool readCount(std::uint64_t& position, std::uint64_t& count) const
    {
        if (position >= offsetTable_ || bytes_[position] >> 4 != Integer || (bytes_[position] & 0x0fU) > 3) {
            return false;
        }
        const std::uint64_t length = std::uint64_t(1) << (bytes_[position] & 0x0fU);
        ++position;
        if (length > offsetTable_ - position) {
            return false;
        }
        count = number(position, length);
        position += length;
        return true;
    }

    /// The bytes of one item; @p count is adjusted where the marker does not hold it as it is.
    std::optional<std::uint64_t> unitSize(unsigned int kind, std::uint64_t& count) const
    {
        switch (kind) {
        case Simple: count = 0; return 1;
        case Integer:
        case Real:
        case Date:
            if (count > 4) {
                return std::nullopt;
            }
            count = std::uint64_t(1) << count;
            return 1;
        case Identifier: ++count; return 1;
        case Data:
        case Ascii: return 1;
        case Utf16: return 2;
        case Array: return referenceSize_;
        case Dictionary: return 2 * referenceSize_;
        default: return std::nullopt;
        }
    }

    enum Kind : unsigned int {
        Simple = 0x0,
        Integer = 0x1,
        Real = 0x2,
        Date = 0x3,
        Data = 0x4,
        Ascii = 0x5,
        Utf16 = 0x6,
        Identifier = 0x8,
        Array = 0xa,
        Dictionary = 0xd
    };

    const unsigned char* bytes_;
    std::uint64_t size_;
    std::uint64_t offsetSize_ = 0;
    std::uint64_t referenceSize_ = 0;
    std::uint64_t objectCount_ = 0;
    std::uint64_t root_ = 0;
    std::uint64_t offsetTable_ = 0;
    std::vector<References> open_;
    PropertyListBudget budget_;
};

} // namespace

bool isAcceptableBinaryPropertyList(const QByteArray& contents)
{
    return BinaryWalk(contents).run();
}

} // namespace norvex
