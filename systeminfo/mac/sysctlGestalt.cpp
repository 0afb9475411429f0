#include "systeminfo/mac/sysctlGestalt.h"

#include <cstring>

NORVEX_DEPRECATED_CALLS_BEGIN

namespace norvex::SystemInfo::MacSysInfo {

namespace {

template <typename Value>
std::optional<Value> sysctlValue(const char* name)
{
    Value value = {};
    std::size_t length = sizeof value;
    if (sysctlbyname(name, &value, &length, nullptr, 0) != 0) {
        return std::nullopt;
    }
    return value;
}

} // namespace

std::optional<std::int32_t> sysctlInt32(const char* name)
{
    return sysctlValue<std::int32_t>(name);
}

std::optional<std::uint64_t> sysctlUInt64(const char* name)
{
    return sysctlValue<std::uint64_t>(name);
}

std::optional<QString> sysctlText(const char* name)
{
    char buffer[512];
    std::size_t length = sizeof buffer;
    if (sysctlbyname(name, buffer, &length, nullptr, 0) != 0) {
        return std::nullopt;
    }
    return QString::fromUtf8(buffer, int(strnlen(buffer, length)));
}

std::optional<time_t> bootTime()
{
    const auto started = sysctlValue<timeval>("kern.boottime");
    return started ? std::make_optional(started->tv_sec) : std::nullopt;
}

std::optional<std::int32_t> gestaltValue(OSType selector)
{
    SInt32 value = 0;
    const auto result = static_cast<OSErr>(Gestalt(selector, &value)); // the low 16 bits decide
    return result == 0 ? std::make_optional(std::int32_t(value)) : std::nullopt;
}

} // namespace norvex::SystemInfo::MacSysInfo

NORVEX_DEPRECATED_CALLS_END
