#pragma once

#include <cstddef>
#include <string>

/// The frequencies and sizes a second time: by moving points and cutting digits in written-out numbers.
namespace reference {

inline std::string withPoint(std::string digits, std::size_t fractionDigits)
{
    if (digits.size() <= fractionDigits) {
        digits.insert(0, fractionDigits + 1 - digits.size(), '0');
    }
    return digits.insert(digits.size() - fractionDigits, 1, '.');
}

inline std::string clockSpeed(unsigned long long hz)
{
    static const char* const units[] = {" kHz", " MHz", " GHz"};
    const std::string digits = std::to_string(hz);
    const std::size_t length = digits.size();
    if (length < 4) {
        return digits + " Hz";
    }
    if (length > 12) {
        return digits.substr(0, length - 9) + " GHz";
    }
    const unsigned long carry = length > 4 && digits[4] >= '5' ? 1 : 0;
    const std::string shown = std::to_string(std::stoul(digits.substr(0, 4)) + carry);
    return withPoint(shown, 3 - (length - 1) % 3) + units[(length - 4) / 3];
}

inline std::string memorySize(unsigned long long bytes)
{
    static const char* const units[] = {" Byte", " KByte", " MByte", " GByte"};
    unsigned unit = 0;
    while (unit < 3 && bytes >> 10 * (unit + 1) != 0) {
        ++unit;
    }
    // The next smaller unit fits at most 2^44 times, so ten times as many stay within 64 bits.
    return unit == 0 ? std::to_string(bytes) + units[0]
                     : withPoint(std::to_string((bytes >> 10 * (unit - 1)) * 10 / 1024), 1) + units[unit];
}

inline std::string diskSize(unsigned long long bytes)
{
    const std::string digits = std::to_string(bytes);
    const std::size_t length = digits.size();
    if (length < 4) {
        return digits + " Byte";
    }
    if (length < 7) {
        return withPoint(std::to_string(bytes * 10 / 1024), 1) + " KB";
    }
    return length < 10 ? withPoint(digits.substr(0, length - 5), 1) + " MB"
                       : withPoint(digits.substr(0, length - 8), 1) + " GB";
}

} // namespace reference
