#include "systeminfo/mac/platform/live/kernel.h"

#include <algorithm>
#include <limits>
#include <map>
#include <sys/sysinfo.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace norvex {

namespace {

utsname kernelName()
{
    utsname name = {};
    uname(&name);
    return name;
}

using Number = std::optional<std::int32_t>;
constexpr std::int64_t largest = std::numeric_limits<std::int32_t>::max();

/// A number of the running kernel's release, counted from 0.
Number releaseNumber(std::size_t index)
{
    const auto numbers = kernelRelease(kernelName().release);
    return numbers ? Number((*numbers)[index]) : std::nullopt;
}

Number architecture()
{
#if defined(__x86_64__) || defined(__i386__)
    return 10;
#elif defined(__powerpc__)
    return 2;
#elif defined(__m68k__)
    return 1;
#else
    return std::nullopt;
#endif
}

std::optional<std::int64_t> physicalMemory()
{
    struct sysinfo info = {};
    if (sysinfo(&info) != 0) {
        return std::nullopt;
    }
    return std::int64_t(info.totalram) * info.mem_unit;
}

/// The memory in bytes; the largest number for all sizes above it.
Number memoryBytes()
{
    const auto bytes = physicalMemory();
    return bytes ? Number(std::int32_t(std::min(*bytes, largest))) : std::nullopt;
}

/// The memory in bytes; absent when it does not fit. The largest number in its place would look like the real size.
Number exactMemoryBytes()
{
    const auto bytes = physicalMemory();
    return bytes && *bytes <= largest ? Number(std::int32_t(*bytes)) : std::nullopt;
}

Number memoryMebibytes()
{
    const auto bytes = physicalMemory();
    return bytes ? Number(std::int32_t(std::min(*bytes >> 20, largest))) : std::nullopt;
}

/// Whether the memory corrects errors; absent when no driver of the memory controller says.
Number memoryParity(const KernelFiles& files)
{
    constexpr std::int32_t able = 1;
    constexpr std::int32_t enabled = 2;
    Number parity;
    for (const QByteArray& module : files.matching("/sys/devices/system/edac/mc/mc*/*/dimm_edac_mode")) {
        const QByteArray mode = files.line(module).value_or("Unknown");
        if (mode != "None" && mode != "Unknown" && mode != "Reserved") {
            return able | enabled;
        }
        if (mode == "None") {
            parity = 0;
        }
    }
    return parity;
}

constexpr std::uint32_t code(const char (&characters)[5])
{
    return std::uint32_t(characters[0]) << 24 | std::uint32_t(characters[1]) << 16 |
           std::uint32_t(characters[2]) << 8 | std::uint32_t(characters[3]);
}

using Query = Number (*)(const KernelFiles&);

const std::map<std::uint32_t, Query>& selectors()
{
    static const std::map<std::uint32_t, Query> all = {
        {code("sys1"), [](const KernelFiles&) { return releaseNumber(0); }},
        {code("sys2"), [](const KernelFiles&) { return releaseNumber(1); }},
        {code("sys3"), [](const KernelFiles&) { return releaseNumber(2); }},
        {code("sysa"), [](const KernelFiles&) { return architecture(); }},
        {code("lram"), [](const KernelFiles&) { return exactMemoryBytes(); }},
        {code("ram "), [](const KernelFiles&) { return memoryBytes(); }},
        {code("ramm"), [](const KernelFiles&) { return memoryMebibytes(); }},
        {code("pgsz"), [](const KernelFiles&) { return Number(std::int32_t(sysconf(_SC_PAGESIZE))); }},
        {code("prty"), memoryParity},
    };
    return all;
}

} // namespace

std::optional<std::array<std::int32_t, 3>> kernelRelease(const QByteArray& release)
{
    std::array<std::int32_t, 3> numbers = {};
    int position = 0;
    for (std::size_t index = 0; index < numbers.size(); ++index) {
        const int start = position;
        while (position < release.size() && release[position] >= '0' && release[position] <= '9') {
            ++position;
        }
        bool fits = false;
        numbers[index] = release.mid(start, position - start).toInt(&fits);
        if (!fits) {
            return index == 0 || position > start ? std::nullopt : std::make_optional(numbers);
        }
        if (position == release.size() || release[position] != '.') {
            break;
        }
        ++position;
    }
    return numbers;
}

QByteArray kernelBuild()
{
    return kernelName().version;
}

QByteArray machineHardware()
{
    return kernelName().machine;
}

std::optional<QByteArray> kernelVersion(const KernelFiles& files)
{
    // uname's version field does not name the compiler.
    return files.line("/proc/version");
}

std::optional<std::int64_t> bootTime(const KernelFiles& files)
{
    const auto statistics = files.contents("/proc/stat");
    const auto seconds = statistics ? valueOfKey(*statistics, "btime", ' ') : std::nullopt;
    bool isNumber = false;
    const std::int64_t time = seconds ? seconds->toLongLong(&isNumber) : 0;
    return isNumber ? std::make_optional(time) : std::nullopt;
}

std::optional<QByteArray> machineModel(const KernelFiles& files)
{
    const auto name = files.line("/sys/class/dmi/id/product_name");
    return name ? name : files.line("/proc/device-tree/model");
}

std::optional<std::int32_t> kernelGestalt(std::uint32_t selector, const KernelFiles& files)
{
    const auto query = selectors().find(selector);
    return query == selectors().end() ? std::nullopt : query->second(files);
}

} // namespace norvex
