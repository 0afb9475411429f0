#include "systeminfo/mac/platform/recorded/recordedValues.h"

#include <QByteArray>

#include <limits>

namespace norvex {

namespace {

std::string_view trimmed(std::string_view text)
{
    constexpr const char* blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

int digitValue(char c)
{
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    const char lower = char(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : 16;
}

struct ParsedInteger
{
    std::uint64_t bits = 0; ///< modulo 2^64
    bool fitsInt32 = false;
};

ParsedInteger parseInteger(std::string_view text)
{
    std::string_view digits = text;
    const bool isNegative = !digits.empty() && digits.front() == '-';
    digits.remove_prefix(isNegative ? 1 : 0);
    const bool isHex = digits.substr(0, 2) == "0x" || digits.substr(0, 2) == "0X";
    digits.remove_prefix(isHex ? 2 : 0);
    const unsigned base = isHex ? 16 : 10;
    constexpr std::uint64_t beyondInt32 = std::uint64_t(1) << 32;

    std::uint64_t bits = 0;
    std::uint64_t magnitude = 0; // stops growing beyond what matters
    for (const char c : digits) {
        const auto digit = unsigned(digitValue(c));
        if (digit >= base) {
            throw PropertyListError("\"" + std::string(text) + "\" is no integer");
        }
        bits = bits * base + digit;
        magnitude = magnitude >= beyondInt32 ? magnitude : magnitude * base + digit;
    }
    if (digits.empty()) {
        throw PropertyListError("\"" + std::string(text) + "\" is no integer");
    }
    const std::uint64_t limit =
        std::uint64_t(std::numeric_limits<std::int32_t>::max()) + (isNegative ? 1 : 0);
    return {isNegative ? 0 - bits : bits, magnitude <= limit};
}

CFNumberType typeOf(const ParsedInteger& integer, int bits)
{
    switch (bits) {
    case 8: return kCFNumberSInt8Type;
    case 16: return kCFNumberSInt16Type;
    case 32: return kCFNumberSInt32Type;
    case 64: return kCFNumberSInt64Type;
    default: return integer.fitsInt32 ? kCFNumberSInt32Type : kCFNumberSInt64Type;
    }
}

ValueRef integerValue(std::string_view text, int bits)
{
    const ParsedInteger parsed = parseInteger(trimmed(text));
    return makeInteger(typeOf(parsed, bits), std::int64_t(parsed.bits));
}

ValueRef realValue(std::string_view text)
{
    const std::string_view number = trimmed(text);
    bool isNumber = false;
    const double value = QByteArray(number.data(), int(number.size())).toDouble(&isNumber);
    if (!isNumber) {
        throw PropertyListError("\"" + std::string(number) + "\" is no number");
    }
    return makeReal(value);
}

ValueRef dataValue(std::string_view text)
{
    QByteArray base64;
    base64.reserve(int(text.size()));
    for (const char c : text) {
        if (c != ' ' && c != '\t' && c != '\r' && c != '\n') {
            base64.append(c);
        }
    }
    const auto result = QByteArray::fromBase64Encoding(base64, QByteArray::AbortOnBase64DecodingErrors);
    if (!result || base64.size() % 4 == 1) { // one digit alone is less than a byte
        throw PropertyListError("the data is no base64");
    }
    const QByteArray& bytes = *result;
    return makeData(std::string_view(bytes.constData(), std::size_t(bytes.size())));
}

} // namespace

ValueRef recordedValue(const PropertyListValue& value)
{
    switch (value.element) {
    case PropertyListElement::String: return makeString(value.text);
    case PropertyListElement::Integer: return integerValue(value.text, value.bits);
    case PropertyListElement::Real: return realValue(value.text);
    case PropertyListElement::Data: return dataValue(value.text);
    case PropertyListElement::True: return makeBoolean(true);
    case PropertyListElement::False: return makeBoolean(false);
    default: return {};
    }
}

} // namespace norvex
