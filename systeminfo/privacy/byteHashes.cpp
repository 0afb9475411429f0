#include "systeminfo/privacy/byteHashes.h"

#include <random>

namespace norvex::Privacy {

namespace {

/// The hash is a polynomial over the bytes, modulo a prime, at a place that nobody knows beforehand.
constexpr std::uint64_t prime = (std::uint64_t(1) << 61) - 1;

constexpr int headDistance = 64; // trades memory for time

std::uint64_t reduced(std::uint64_t number)
{
    const std::uint64_t sum = (number >> 61) + (number & prime);
    return sum >= prime ? sum - prime : sum;
}

/// In 64 bits, by the halves of the factors.
std::uint64_t product(std::uint64_t a, std::uint64_t b)
{
    constexpr std::uint64_t low31 = (std::uint64_t(1) << 31) - 1;
    constexpr std::uint64_t low30 = (std::uint64_t(1) << 30) - 1;
    const std::uint64_t middle = (a & low31) * (b >> 31) + (a >> 31) * (b & low31);
    return reduced((a >> 31) * (b >> 31) * 2 + (middle >> 30) + ((middle & low30) << 31) +
                   (a & low31) * (b & low31));
}

std::uint64_t place()
{
    static const std::uint64_t chosen = [] {
        std::random_device device;
        return (std::uint64_t(device()) << 32 | device()) % (prime - 512) + 256;
    }();
    return chosen;
}

std::uint64_t power(int exponent)
{
    std::uint64_t result = 1;
    for (std::uint64_t square = place(); exponent > 0; exponent /= 2, square = product(square, square)) {
        result = exponent % 2 == 0 ? result : product(result, square);
    }
    return result;
}

/// Zero bytes count: no byte stands for 0.
ByteHash continued(ByteHash hash, const char* bytes, int size)
{
    const std::uint64_t factor = place();
    for (int i = 0; i < size; ++i) {
        hash = reduced(product(hash, factor) + static_cast<unsigned char>(bytes[i]) + 1);
    }
    return hash;
}

} // namespace

ByteHash hashOf(const char* bytes, int size)
{
    return continued(0, bytes, size);
}

ByteHash hashOfTail(ByteHash whole, ByteHash head, int size)
{
    return reduced(whole + prime - product(head, power(size)));
}

ByteHash PartHashes::of(int begin, int end)
{
    return hashOfTail(ofHead(end), ofHead(begin), end - begin);
}

ByteHash PartHashes::ofHead(int size)
{
    const int index = size / headDistance;
    while (static_cast<int>(heads_.size()) <= index) {
        const int known = (static_cast<int>(heads_.size()) - 1) * headDistance;
        heads_.push_back(continued(heads_.back(), text_.constData() + known, headDistance));
    }
    const int known = index * headDistance;
    return continued(heads_[static_cast<std::size_t>(index)], text_.constData() + known, size - known);
}

} // namespace norvex::Privacy
