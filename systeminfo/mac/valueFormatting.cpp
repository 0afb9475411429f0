#include "systeminfo/mac/norvexSystemInfoMac.h"

#include <QStringBuilder>
#include <algorithm>
#include <cstddef>
#include <iterator>

namespace norvex::SystemInfo::MacSysInfo {
namespace {

using Number = unsigned long long;

constexpr Number kilo = 1000;
constexpr Number mega = 1000 * kilo;
constexpr Number giga = 1000 * mega;
constexpr Number kibi = 1024;
constexpr Number mebi = 1024 * kibi;
constexpr Number gibi = 1024 * mebi;

/// How values print from a threshold up to that of the tier before it in the table.
struct Tier
{
    Number from;
    Number unit;
    Number grain; ///< The fraction is computed from whole multiples of this, which divides the unit.
    int digits;   ///< Of the fraction. 0: the value is truncated and has no point.
    const char* unitName;
};

// Each table goes down to a threshold of 0, so that every value has its tier.

const Tier clockSpeeds[] = {
    {1000 * giga, giga, 1, 0, " GHz"},
    {100 * giga, giga, 1, 1, " GHz"},
    {10 * giga, giga, 1, 2, " GHz"},
    {giga, giga, 1, 3, " GHz"},
    {100 * mega, mega, 1, 1, " MHz"},
    {10 * mega, mega, 1, 2, " MHz"},
    {mega, mega, 1, 3, " MHz"},
    {100 * kilo, kilo, 1, 1, " kHz"},
    {10 * kilo, kilo, 1, 2, " kHz"},
    {kilo, kilo, 1, 3, " kHz"},
    {0, 1, 1, 0, " Hz"},
};

const Tier memorySizes[] = {
    {gibi, gibi, mebi, 1, " GByte"},
    {mebi, mebi, kibi, 1, " MByte"},
    {kibi, kibi, 1, 1, " KByte"},
    {0, 1, 1, 0, " Byte"},
};

/// A KB of a disk size has 1024 bytes, but sizes are in KB from 1000 bytes on.
const Tier diskSizes[] = {
    {giga, giga, 1, 1, " GB"},
    {mega, mega, 1, 1, " MB"},
    {kilo, kibi, 1, 1, " KB"},
    {0, 1, 1, 0, " Byte"},
};

enum class Rounding { Down, HalfUp };

/// No step of the computation overflows: remainders are below 2^30 and powers of ten at most 1000.
template <std::size_t count>
QString format(Number value, const Tier (&tiers)[count], Rounding rounding)
{
    static const Number powersOfTen[] = {1, 10, 100, 1000};

    const Tier& tier = *std::find_if(std::begin(tiers), std::end(tiers) - 1,
                                     [value](const Tier& each) { return value >= each.from; });
    Number whole = value / tier.unit;
    if (tier.digits == 0) {
        return QString::number(whole) % QLatin1String(tier.unitName);
    }
    const Number grains = tier.unit / tier.grain;
    const Number half = rounding == Rounding::HalfUp ? grains / 2 : 0;
    const Number scale = powersOfTen[tier.digits];
    Number fraction = (value % tier.unit / tier.grain * scale + half) / grains;
    if (fraction == scale) {
        // A carry does not change the tier: 999 950 Hz are "1000.0 kHz".
        ++whole;
        fraction = 0;
    }
    return QString::number(whole) % QLatin1Char('.') %
           QString::number(fraction).rightJustified(tier.digits, QLatin1Char('0')) %
           QLatin1String(tier.unitName);
}

} // namespace

QString clockSpeedConvertUserFriendly(unsigned long long hz)
{
    return format(hz, clockSpeeds, Rounding::HalfUp);
}

QString memorySizeConvertUserFriendly(unsigned long long bytes)
{
    return format(bytes, memorySizes, Rounding::Down);
}

QString diskSizeConvertUserFriendly(unsigned long long bytes)
{
    return format(bytes, diskSizes, Rounding::Down);
}

} // namespace norvex::SystemInfo::MacSysInfo
