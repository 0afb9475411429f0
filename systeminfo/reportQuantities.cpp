#include "systeminfo/reportQuantities.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace norvex::SystemInfo::Internal {

namespace {

constexpr quint64 largest = quint64(1) << 53;
constexpr quint64 kibi = 1024;
constexpr quint64 mega = 1000000;

struct Unit
{
    ValueKind kind;
    const char* printed;
    quint64 factor;
    const char* base;
};

/// As the report's formatters print them. The KB of a disk size has 1024 bytes.
const Unit units[] = {
    {ValueKind::MemorySize, "Byte", 1, "byte"},
    {ValueKind::MemorySize, "KByte", kibi, "byte"},
    {ValueKind::MemorySize, "MByte", kibi* kibi, "byte"},
    {ValueKind::MemorySize, "GByte", kibi* kibi* kibi, "byte"},
    {ValueKind::DiskSize, "Byte", 1, "byte"},
    {ValueKind::DiskSize, "KB", kibi, "byte"},
    {ValueKind::DiskSize, "MB", mega, "byte"},
    {ValueKind::DiskSize, "GB", 1000 * mega, "byte"},
    {ValueKind::ClockSpeed, "Hz", 1, "hertz"},
    {ValueKind::ClockSpeed, "kHz", 1000, "hertz"},
    {ValueKind::ClockSpeed, "MHz", mega, "hertz"},
    {ValueKind::ClockSpeed, "GHz", 1000 * mega, "hertz"},
    {ValueKind::Frequency, "Hz", 1, "hertz"},
    {ValueKind::Lengths, "mm", 1, "millimetre"},
    {ValueKind::Lengths, "inch", 1, "inch"},
    {ValueKind::BitRate, "Mbit/s", mega, "bit a second"},
};

/// digits × 10^exponent
struct Decimal
{
    quint64 digits = 0;
    int exponent = 0;
};

bool isDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

/// Reads numbers with their units from the begin to the end of a text.
class QuantityReader
{
public:
    QuantityReader(const QString& text, ValueKind kind) : text_(text), kind_(kind) {}

    /// Whether there is another number with a unit. It is part of `quantities` afterwards unless it cannot be told.
    bool next(QVector<Quantity>& quantities);
    bool isWhole() const { return first_ == 0 && position_ == text_.size(); }

private:
    bool readDecimal(Decimal& decimal);
    bool readDigits(Decimal& decimal, int step);
    bool readExponent(Decimal& decimal);
    const Unit* readUnit();
    QChar at(int position) const { return position < text_.size() ? text_.at(position) : QChar(); }

    const QString& text_;
    const ValueKind kind_;
    int first_ = 0;
    int position_ = 0;
};

/// The product rounded down; false when it is above the largest number.
bool product(const Decimal& decimal, quint64 factor, qint64& result)
{
    if (decimal.digits > std::numeric_limits<quint64>::max() / factor) {
        return false;
    }
    quint64 value = decimal.digits * factor;
    for (int exponent = decimal.exponent; exponent < 0 && value != 0; ++exponent) {
        value /= 10;
    }
    for (int exponent = decimal.exponent; exponent > 0 && value != 0 && value <= largest; --exponent) {
        value *= 10;
    }
    result = static_cast<qint64>(value);
    return value <= largest;
}

bool QuantityReader::readDigits(Decimal& decimal, int step)
{
    constexpr quint64 limit = std::numeric_limits<quint64>::max() / 10 - 1;
    const int first = position_;
    for (; isDigit(at(position_)); ++position_) {
        if (decimal.digits > limit) {
            return false;
        }
        decimal.digits = decimal.digits * 10 + quint64(at(position_).unicode() - '0');
        decimal.exponent += step;
    }
    return position_ != first;
}

/// "e+06" behind the digits, or nothing.
bool QuantityReader::readExponent(Decimal& decimal)
{
    const QChar sign = at(position_ + 1);
    if (at(position_) != QLatin1Char('e') || (sign != QLatin1Char('+') && sign != QLatin1Char('-'))) {
        return true;
    }
    position_ += 2;
    Decimal exponent;
    constexpr int longest = 400;
    if (!readDigits(exponent, 0) || exponent.digits > longest) {
        return false;
    }
    const int magnitude = static_cast<int>(exponent.digits);
    decimal.exponent += sign == QLatin1Char('-') ? -magnitude : magnitude;
    return true;
}

bool QuantityReader::readDecimal(Decimal& decimal)
{
    if (!readDigits(decimal, 0)) {
        return false;
    }
    if (at(position_) == QLatin1Char('.')) {
        ++position_;
        if (!readDigits(decimal, -1)) {
            return false;
        }
    }
    return readExponent(decimal);
}

/// The unit, with or without a blank in front.
const Unit* QuantityReader::readUnit()
{
    const int begin = at(position_) == QLatin1Char(' ') ? position_ + 1 : position_;
    for (const Unit& unit : units) {
        const int end = begin + static_cast<int>(qstrlen(unit.printed));
        if (unit.kind == kind_ && hasAt(text_, qMin(begin, text_.size()), text_.size(), unit.printed) &&
            !at(end).isLetterOrNumber()) {
            position_ = end;
            return &unit;
        }
    }
    return nullptr;
}

bool QuantityReader::next(QVector<Quantity>& quantities)
{
    while (position_ < text_.size()) {
        const QChar before = position_ == 0 ? QChar() : text_.at(position_ - 1);
        if (!isDigit(at(position_)) || before.isLetterOrNumber() || before == QLatin1Char('-') ||
            before == QLatin1Char('.')) {
            ++position_;
            continue;
        }
        first_ = position_;
        Decimal decimal;
        const bool isComplete = readDecimal(decimal);
        const Unit* const unit = isComplete ? readUnit() : nullptr;
        if (unit != nullptr) {
            Quantity quantity = {0, unit->base};
            if (product(decimal, unit->factor, quantity.number)) {
                quantities.append(quantity);
            }
            return true;
        }
    }
    return false;
}

} // namespace

QVector<Quantity> quantitiesIn(const QString& value, ValueKind kind)
{
    const bool maySurround = kind == ValueKind::Lengths || kind == ValueKind::BitRate;
    QuantityReader reader(value, kind);
    QVector<Quantity> quantities;
    for (int count = 0; reader.next(quantities);) {
        if (quantities.size() != ++count || (!maySurround && !reader.isWhole())) {
            return {};
        }
    }
    return quantities;
}

} // namespace norvex::SystemInfo::Internal
