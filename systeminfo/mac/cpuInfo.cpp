#include "systeminfo/mac/cpuNames.h"
#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/mac/processorQueries.h"
#include "systeminfo/mac/sysctlGestalt.h"
#include "systeminfo/sectionText.h"

namespace norvex::SystemInfo::MacSysInfo {

using namespace Internal;

namespace {

/// The text of a line behind its label; nothing when the query fails.
using LineText = std::optional<QString>;

constexpr std::uint32_t flags64Bit = 0x01000000; // CPU_ARCH_ABI64
constexpr std::uint32_t typeMask = 0x00ffffff;

std::optional<std::uint32_t> sysctlUInt32(const char* query)
{
    const auto value = sysctlInt32(query);
    return value ? std::make_optional(static_cast<std::uint32_t>(*value)) : std::nullopt;
}

QString decimalAndHexadecimal(std::uint32_t value)
{
    return QString::number(value) + QLatin1String(" = ") + hexadecimal(value);
}

template <typename Value, typename Format>
LineText formatted(const std::optional<Value>& value, Format format)
{
    return value ? LineText(format(*value)) : std::nullopt;
}

QString familyText(std::uint32_t family)
{
    const QString name = family == cpuFamilyPenryn ? penrynFamilyName(sysctlInt32("machdep.cpu.model"))
                                                   : cpuFamilyName(family);
    return decimalAndHexadecimal(family) + QLatin1String(" =") + name;
}

QString byteOrderText(std::uint32_t order)
{
    const char* const name = order == 4321 ? "Big Endian" : (order == 1234 ? "Little Endian" : "unknwon");
    return QStringLiteral("%1 = ").arg(order) + QLatin1String(name);
}

/// Makes the texts of the section's lines. Call of() in their order: the text of the sub-type depends on the type,
/// which an earlier line shows.
class ProcessorTexts
{
public:
    LineText of(const ProcessorQuery& query);

private:
    QString typeText(std::uint32_t type);
    QString subTypeText(std::int32_t subType) const;

    std::uint32_t typeWithoutFlags_ = 0;
};

LineText ProcessorTexts::of(const ProcessorQuery& query)
{
    const auto number = [](auto value) { return QString::number(value); };
    switch (query.value) {
    case ProcessorValue::Unsigned: return formatted(sysctlUInt32(query.name), number);
    case ProcessorValue::Signed: return formatted(sysctlInt32(query.name), number);
    case ProcessorValue::Text: return sysctlText(query.name);
    case ProcessorValue::ClockSpeed:
        return formatted(sysctlUInt64(query.name), clockSpeedConvertUserFriendly);
    case ProcessorValue::CacheSize: return formatted(sysctlUInt64(query.name), memorySizeConvertUserFriendly);
    case ProcessorValue::Type:
        return formatted(sysctlUInt32(query.name), [this](std::uint32_t type) { return typeText(type); });
    case ProcessorValue::SubType:
        return formatted(sysctlInt32(query.name), [this](std::int32_t type) { return subTypeText(type); });
    case ProcessorValue::Family: return formatted(sysctlUInt32(query.name), familyText);
    case ProcessorValue::ByteOrder: return formatted(sysctlUInt32(query.name), byteOrderText);
    }
    return std::nullopt;
}

QString ProcessorTexts::typeText(std::uint32_t type)
{
    typeWithoutFlags_ = type & typeMask;
    const char* const bits = (type & flags64Bit) != 0 ? "64bit " : "";
    return QStringLiteral("%1 = ").arg(type) + cpuTypeName(typeWithoutFlags_) + QLatin1String(bits);
}

QString ProcessorTexts::subTypeText(std::int32_t subType) const
{
    const bool isX86 = typeWithoutFlags_ == cpuTypeX86;
    const bool hasFamily = isX86 && sysctlInt32("hw.cpufamily").value_or(0) != 0;
    return decimalAndHexadecimal(static_cast<std::uint32_t>(subType)) + QLatin1String(" = ") +
           cpuSubTypeName(typeWithoutFlags_, subType, hasFamily);
}

} // namespace

QString cpuInfo()
{
    SectionText section(sNewLine);
    ProcessorTexts texts;
    for (const ProcessorQuery& query : processorQueries) {
        section.line(query.label, texts.of(query));
    }
    return section.text();
}

} // namespace norvex::SystemInfo::MacSysInfo
