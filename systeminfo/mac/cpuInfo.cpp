#include "systeminfo/mac/cpuNames.h"
#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/mac/sysctlGestalt.h"

namespace norvex::SystemInfo::MacSysInfo {

namespace {

// What an earlier line found out for a later one.
struct Context
{
    std::uint32_t typeWithoutFlags = 0;
};

// The text of a line behind its label; nothing when the query fails.
using LineText = std::optional<QString>;

struct Line
{
    const char* label;
    const char* query;
    LineText (*text)(const char* query, Context& context);
};

constexpr std::uint32_t flags64Bit = 0x01000000; // CPU_ARCH_ABI64
constexpr std::uint32_t typeMask = 0x00ffffff;

std::optional<std::uint32_t> sysctlUInt32(const char* query)
{
    const auto value = sysctlInt32(query);
    return value ? std::make_optional(static_cast<std::uint32_t>(*value)) : std::nullopt;
}

QString decimalAndHex(std::uint32_t value)
{
    return QStringLiteral("%1 = 0x%2").arg(value).arg(value, 0, 16, QLatin1Char('0'));
}

LineText unsignedText(const char* query, Context&)
{
    const auto value = sysctlUInt32(query);
    return value ? LineText(QString::number(*value)) : std::nullopt;
}

LineText signedText(const char* query, Context&)
{
    const auto value = sysctlInt32(query);
    return value ? LineText(QString::number(*value)) : std::nullopt;
}

LineText plainText(const char* query, Context&)
{
    return sysctlText(query);
}

LineText clockSpeed(const char* query, Context&)
{
    const auto hertz = sysctlUInt64(query);
    return hertz ? LineText(clockSpeedConvertUserFriendly(*hertz)) : std::nullopt;
}

LineText cacheSize(const char* query, Context&)
{
    const auto bytes = sysctlUInt64(query);
    return bytes ? LineText(memorySizeConvertUserFriendly(*bytes)) : std::nullopt;
}

LineText cpuType(const char* query, Context& context)
{
    const auto type = sysctlUInt32(query);
    if (!type) {
        return std::nullopt;
    }
    context.typeWithoutFlags = *type & typeMask;
    const char* const bits = (*type & flags64Bit) != 0 ? "64bit " : "";
    return QStringLiteral("%1 = ").arg(*type) + cpuTypeName(context.typeWithoutFlags) + QLatin1String(bits);
}

LineText cpuSubType(const char* query, Context& context)
{
    const auto subType = sysctlInt32(query);
    if (!subType) {
        return std::nullopt;
    }
    const bool isX86 = context.typeWithoutFlags == cpuTypeX86;
    const bool hasFamily = isX86 && sysctlInt32("hw.cpufamily").value_or(0) != 0;
    return decimalAndHex(static_cast<std::uint32_t>(*subType)) + QLatin1String(" = ") +
           cpuSubTypeName(context.typeWithoutFlags, *subType, hasFamily);
}

LineText cpuFamily(const char* query, Context&)
{
    const auto family = sysctlUInt32(query);
    if (!family) {
        return std::nullopt;
    }
    const QString name = *family == cpuFamilyPenryn ? penrynFamilyName(sysctlInt32("machdep.cpu.model"))
                                                    : cpuFamilyName(*family);
    return decimalAndHex(*family) + QLatin1String(" =") + name;
}

LineText byteOrder(const char* query, Context&)
{
    const auto order = sysctlUInt32(query);
    if (!order) {
        return std::nullopt;
    }
    const char* const name = *order == 4321 ? "Big Endian" : (*order == 1234 ? "Little Endian" : "unknwon");
    return QStringLiteral("%1 = ").arg(*order) + QLatin1String(name);
}

const Line lines[] = {
    {"Number of physical cores: ", "hw.physicalcpu_max", unsignedText},
    {"Number of virtual cores: ", "hw.ncpu", unsignedText},
    {"CPU type: ", "hw.cputype", cpuType},
    {"CPU sub type: ", "hw.cpusubtype", cpuSubType},
    {"CPU family: ", "hw.cpufamily", cpuFamily},
    {"CPU 64bit capable: ", "hw.cpu64bit_capable", signedText},
    {"CPU vendor: ", "machdep.cpu.vendor", plainText},
    {"CPU brand name: ", "machdep.cpu.brand_string", plainText},
    {"CPU family: ", "machdep.cpu.family", signedText},
    {"CPU model: ", "machdep.cpu.model", signedText},
    {"CPU extmodel: ", "machdep.cpu.extmodel", signedText},
    {"CPU extfamily: ", "machdep.cpu.extfamily", signedText},
    {"CPU stepping: ", "machdep.cpu.stepping", signedText},
    {"CPU signature: ", "machdep.cpu.signature", signedText},
    {"CPU microcode version: ", "machdep.cpu.microcode_version", signedText},
    {"CPU logical per package: ", "machdep.cpu.logical_per_package", signedText},
    {"CPU cores per package: ", "machdep.cpu.cores_per_package", signedText},
    {"CPU features: ", "machdep.cpu.features", plainText},
    {"Processor clock speed: ", "hw.cpufrequency_max", clockSpeed},
    {"Bus clock speed: ", "hw.busfrequency_max", clockSpeed},
    {"L1 Data Cache size: ", "hw.l1dcachesize", cacheSize},
    {"L1 Instruction Cache size: ", "hw.l1icachesize", cacheSize},
    {"L2 Cache size: ", "hw.l2cachesize", cacheSize},
    {"L3 Cache size: ", "hw.l3cachesize", cacheSize},
    {"Byte order: ", "hw.byteorder", byteOrder},
};

} // namespace

QString cpuInfo()
{
    QString section;
    Context context;
    for (const Line& line : lines) {
        if (const LineText text = line.text(line.query, context)) {
            section += QLatin1String(line.label) + *text + sNewLine;
        }
    }
    return section;
}

} // namespace norvex::SystemInfo::MacSysInfo
