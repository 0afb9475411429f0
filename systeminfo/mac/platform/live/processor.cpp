#include "systeminfo/mac/platform/live/processor.h"

#include "systeminfo/mac/platform/live/cpuTopology.h"

#include <cmath>
#include <unistd.h>

namespace norvex {

namespace {

/// The beginning of /proc/cpuinfo, which describes the first processor.
QByteArray firstListed(const KernelFiles& files)
{
    return files.contents("/proc/cpuinfo", 4096).value_or(QByteArray());
}

std::int64_t hertz(double megahertz)
{
    return std::llround(megahertz * 1e6);
}

/// The clock in a name like "Intel(R) Core(TM) i7-4850HQ CPU @ 2.30GHz".
std::optional<std::int64_t> brandClock(const Cpuid& cpuid)
{
    const QByteArray name = cpuidBrand(cpuid).value_or(QByteArray());
    const QByteArray clock = name.mid(name.lastIndexOf('@') + 1).trimmed();
    const double unit = clock.endsWith("GHz") ? 1e9 : clock.endsWith("MHz") ? 1e6 : 0;
    const double value = clock.left(clock.size() - 3).toDouble();
    return unit > 0 && value > 0 ? std::make_optional<std::int64_t>(std::llround(value * unit))
                                 : std::nullopt;
}

/// The clock that the kernel measured when it started. Processors with aperfmperf are left out: for them the
/// kernel shows the present clock instead.
std::optional<std::int64_t> calibratedClock(const KernelFiles& files)
{
    const QByteArray listed = firstListed(files);
    const auto flags = valueOfKey(listed, "flags", ':');
    const double megahertz = valueOfKey(listed, "cpu MHz", ':').value_or(QByteArray()).toDouble();
    if (!flags || flags->split(' ').contains("aperfmperf") || megahertz < 1) {
        return std::nullopt;
    }
    return hertz(megahertz);
}

/// A clock in the registers of CPUID's leaf for clocks, in megahertz there.
std::optional<std::int64_t> listedClock(const Cpuid& cpuid, std::uint32_t CpuidRegisters::*inRegister)
{
    const auto registers = cpuidLeaf(cpuid, 0x16);
    const std::uint32_t megahertz = registers ? (*registers).*inRegister & 0xffff : 0;
    return megahertz != 0 ? std::make_optional(hertz(megahertz)) : std::nullopt;
}

struct CacheNames
{
    int sysconfName;
    const char* level; // as the kernel's files write it
    const char* type;
};

CacheNames namesOf(Cache cache)
{
    switch (cache) {
    case Cache::Level1Data: return {_SC_LEVEL1_DCACHE_SIZE, "1", "Data"};
    case Cache::Level1Instructions: return {_SC_LEVEL1_ICACHE_SIZE, "1", "Instruction"};
    case Cache::Level2: return {_SC_LEVEL2_CACHE_SIZE, "2", "Data"};
    case Cache::Level3: break;
    }
    return {_SC_LEVEL3_CACHE_SIZE, "3", "Data"};
}

} // namespace

std::optional<std::int64_t> microcodeRevision(const KernelFiles& files)
{
    auto revision = files.line(cpuPath("cpu0/microcode/version"));
    if (!revision) {
        revision = valueOfKey(firstListed(files), "microcode", ':');
    }
    bool isNumber = false;
    const std::uint32_t value = revision ? revision->toUInt(&isNumber, 0) : 0;
    // A hypervisor that hides the revision shows all ones.
    constexpr std::uint32_t hidden = 0xffffffffu;
    return isNumber && value != hidden ? std::make_optional<std::int64_t>(value) : std::nullopt;
}

std::optional<std::int64_t> highestClock(const Cpuid& cpuid, const KernelFiles& files)
{
    // The cores of one processor may have different clocks.
    std::int64_t kilohertz = 0;
    for (const QByteArray& clock : files.matching(cpuPath("cpufreq/policy*/cpuinfo_max_freq"))) {
        kilohertz = qMax(kilohertz, std::int64_t(files.number(clock).value_or(0)));
    }
    if (kilohertz > 0) {
        return kilohertz * 1000;
    }
    if (const auto clock = listedClock(cpuid, &CpuidRegisters::ebx)) {
        return clock;
    }
    const auto named = brandClock(cpuid);
    return named ? named : calibratedClock(files);
}

std::optional<std::int64_t> busClock(const Cpuid& cpuid)
{
    return listedClock(cpuid, &CpuidRegisters::ecx);
}

std::optional<std::int64_t> cacheSize(Cache cache, const KernelFiles& files)
{
    const CacheNames names = namesOf(cache);
    const long bytes = sysconf(names.sysconfName);
    if (bytes > 0) {
        return bytes;
    }
    // The C library does not know the caches of all processors.
    for (const QByteArray& folder : files.matching(cpuPath("cpu0/cache/index*"))) {
        const auto type = files.line(folder + "/type");
        QByteArray size = files.line(folder + "/size").value_or(QByteArray());
        if (files.line(folder + "/level") != QByteArray(names.level) || !size.endsWith('K') ||
            (type != QByteArray(names.type) && type != QByteArray("Unified"))) {
            continue;
        }
        size.chop(1);
        const std::int64_t kilobytes = size.toLongLong();
        if (kilobytes > 0) {
            return kilobytes * 1024;
        }
    }
    return std::nullopt;
}

} // namespace norvex
