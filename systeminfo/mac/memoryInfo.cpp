#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/mac/sysctlGestalt.h"
#include "systeminfo/sectionText.h"

#include <limits>

namespace norvex::SystemInfo::MacSysInfo {

namespace {

/// A negative size shows as the huge one that its sign-extended bits make: the report has always shown it so.
QString sizeText(std::int64_t bytes)
{
    return memorySizeConvertUserFriendly(static_cast<unsigned long long>(bytes));
}

std::optional<QString> size(OSType selector)
{
    const auto bytes = gestaltValue(selector);
    return bytes ? std::make_optional(sizeText(*bytes)) : std::nullopt;
}

/// The largest number stands for all sizes that do not fit; 'ramm' has the size in megabytes then.
std::optional<QString> physicalSize(OSType selector)
{
    constexpr int bytesPerMegabyteShift = 20;
    const auto bytes = gestaltValue(selector);
    if (!bytes) {
        return std::nullopt;
    }
    if (*bytes != std::numeric_limits<std::int32_t>::max()) {
        return sizeText(*bytes);
    }
    const std::int64_t megabytes = gestaltValue(gestaltSelector("ramm")).value_or(0);
    return sizeText(megabytes * (std::int64_t(1) << bytesPerMegabyteShift));
}

std::optional<QString> parity(OSType selector)
{
    const auto attributes = gestaltValue(selector);
    if (!attributes) {
        return std::nullopt;
    }
    return (*attributes & 1) != 0 ? QStringLiteral("'Parity enabled' ") : QString();
}

std::optional<QString> number(OSType selector)
{
    const auto value = gestaltValue(selector);
    return value ? std::make_optional(QString::number(*value)) : std::nullopt;
}

const struct
{
    const char* label;
    OSType selector;
    std::optional<QString> (*text)(OSType selector);
} lines[] = {
    {"Logical RAM size: ", gestaltSelector("lram"), size},
    {"Physical RAM size: ", gestaltSelector("ram "), physicalSize},
    {"Low memory area size: ", gestaltSelector("lmem"), size},
    {"Logical Page Size: ", gestaltSelector("pgsz"), size},
    {"Memory Parity: ", gestaltSelector("prty"), parity},
    {"MMU type: ", gestaltSelector("mmu "), number},
};

} // namespace

QString memoryInfo()
{
    Internal::SectionText section(sNewLine);
    for (const auto& line : lines) {
        section.line(line.label, line.text(line.selector));
    }
    return section.text();
}

} // namespace norvex::SystemInfo::MacSysInfo
