#include "systeminfo/mac/platform/live/kernel.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <sys/sysinfo.h>
#include <sys/time.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace norvex {

namespace {

using Text = std::optional<QByteArray>;

utsname kernelName()
{
    utsname name = {};
    uname(&name);
    return name;
}

Text version(const KernelFiles& files)
{
    // The line is longer than uname's version field, which has to do without the compiler.
    const auto line = files.line("/proc/version");
    return line ? Text(sysctlText(*line)) : std::nullopt;
}

Text bootTime(const KernelFiles& files)
{
    const auto statistics = files.contents("/proc/stat");
    const auto seconds = statistics ? valueOfKey(*statistics, "btime", ' ') : std::nullopt;
    bool isNumber = false;
    timeval time = {};
    time.tv_sec = seconds ? time_t(seconds->toLongLong(&isNumber)) : 0;
    return isNumber ? Text(sysctlBytes(time)) : std::nullopt;
}

Text model(const KernelFiles& files)
{
    for (const char* path : {"/sys/class/dmi/id/product_name", "/proc/device-tree/model"}) {
        if (const auto name = files.line(path)) {
            return sysctlText(*name);
        }
    }
    return std::nullopt;
}

struct KernelFact
{
    const char* name;
    Text (*answer)(const KernelFiles&);
};

constexpr KernelFact kernelFacts[] = {
    {"kern.osversion", [](const KernelFiles&) { return Text(sysctlText(kernelName().version)); }},
    {"kern.version", version},
    {"kern.boottime", bootTime},
    {"hw.machine", [](const KernelFiles&) { return Text(sysctlText(kernelName().machine)); }},
    {"hw.model", model},
};

using Number = std::optional<std::int32_t>;
constexpr std::int64_t largest = std::numeric_limits<std::int32_t>::max();

Number releaseNumber(std::size_t place)
{
    const auto numbers = kernelRelease(kernelName().release);
    return numbers ? Number((*numbers)[place]) : std::nullopt;
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

/// Memory in bytes, as far as it fits: the largest number stands for all sizes above it.
Number memoryBytes()
{
    const auto bytes = physicalMemory();
    return bytes ? Number(std::int32_t(std::min(*bytes, largest))) : std::nullopt;
}

/// Memory in bytes where the number can say it: nothing else tells a reader that it stands for more.
Number exactMemoryBytes()
{
    const auto bytes = physicalMemory();
    return bytes && *bytes <= std::numeric_limits<std::int32_t>::max() ? Number(std::int32_t(*bytes))
                                                                       : std::nullopt;
}

Number memoryMebibytes()
{
    const auto bytes = physicalMemory();
    return bytes ? Number(std::int32_t(std::min(*bytes >> 20, largest))) : std::nullopt;
}

/// Whether the memory corrects errors, as far as a driver of its controller tells.
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

struct Selector
{
    std::uint32_t code;
    Number (*answer)(const KernelFiles&);
};

constexpr Selector selectors[] = {
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

} // namespace

std::optional<std::array<std::int32_t, 3>> kernelRelease(const QByteArray& release)
{
    std::array<std::int32_t, 3> numbers = {};
    int place = 0;
    for (std::size_t index = 0; index < numbers.size(); ++index) {
        const int start = place;
        while (place < release.size() && release[place] >= '0' && release[place] <= '9') {
            ++place;
        }
        bool fits = false;
        numbers[index] = release.mid(start, place - start).toInt(&fits);
        if (!fits) {
            return index == 0 || place > start ? std::nullopt : std::make_optional(numbers);
        }
        if (place == release.size() || release[place] != '.') {
            break;
        }
        ++place;
    }
    return numbers;
}

std::optional<QByteArray> kernelSysctl(const QByteArray& name, const KernelFiles& files)
{
    const auto fact = std::find_if(std::begin(kernelFacts), std::end(kernelFacts),
                                   [&name](const KernelFact& known) { return name == known.name; });
    return fact == std::end(kernelFacts) ? std::nullopt : fact->answer(files);
}

std::optional<std::int32_t> kernelGestalt(std::uint32_t selector, const KernelFiles& files)
{
    const auto known = std::find_if(std::begin(selectors), std::end(selectors),
                                    [selector](const Selector& one) { return one.code == selector; });
    return known == std::end(selectors) ? std::nullopt : known->answer(files);
}

} // namespace norvex
