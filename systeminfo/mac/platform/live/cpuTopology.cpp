#include "systeminfo/mac/platform/live/cpuTopology.h"

#include <QList>
#include <QSet>

#include <set>
#include <unistd.h>
#include <utility>

namespace norvex {

namespace {

/// The numbers in a list like "0-3,8"; absent when the file is missing or does not hold a list.
std::optional<QList<int>> cpuList(const KernelFiles& files, const QByteArray& path)
{
    const auto list = files.line(cpuPath(path));
    if (!list) {
        return std::nullopt;
    }
    QList<int> numbers;
    for (const QByteArray& range : list->split(',')) {
        const QList<QByteArray> ends = range.split('-');
        bool firstValid = false;
        bool lastValid = false;
        const int first = ends.first().toInt(&firstValid);
        const int last = ends.last().toInt(&lastValid);
        constexpr int most = 1 << 20;
        if (!firstValid || !lastValid || first < 0 || last > most) {
            return std::nullopt;
        }
        for (int cpu = first; cpu <= last; ++cpu) {
            numbers.append(cpu);
        }
    }
    return numbers.isEmpty() ? std::nullopt : std::make_optional(numbers);
}

/// The CPUs that share something with a CPU, such as its core. Older kernels have another name for the list.
std::optional<QList<int>> siblings(const KernelFiles& files, int cpu, const char* name, const char* olderName)
{
    const QByteArray folder = "cpu" + QByteArray::number(cpu) + "/topology/";
    const auto list = cpuList(files, folder + name);
    return list ? list : cpuList(files, folder + olderName);
}

/// The number of cores that CPUs belong to. CPUs that are off have no topology and do not count.
std::optional<std::int64_t> coresOf(const KernelFiles& files, const QList<int>& cpus)
{
    QSet<int> seen;
    std::int64_t cores = 0;
    for (const int cpu : cpus) {
        if (seen.contains(cpu)) {
            continue;
        }
        const auto threads = siblings(files, cpu, "core_cpus_list", "thread_siblings_list");
        if (!threads) {
            continue;
        }
        ++cores;
        for (const int thread : *threads) {
            seen.insert(thread);
        }
    }
    return cores == 0 ? std::nullopt : std::make_optional(cores);
}

/// The number of cores in /proc/cpuinfo, for hosts whose /sys does not describe processors.
std::optional<std::int64_t> listedCores(const KernelFiles& files)
{
    std::set<std::pair<QByteArray, QByteArray>> cores;
    QByteArray package;
    for (const QByteArray& entry : files.contents("/proc/cpuinfo").value_or(QByteArray()).split('\n')) {
        package = valueOfKey(entry, "physical id", ':').value_or(package);
        if (const auto core = valueOfKey(entry, "core id", ':')) {
            cores.insert({package, *core});
        }
    }
    return cores.empty() ? std::nullopt : std::make_optional(std::int64_t(cores.size()));
}

/// The CPUs of the first processor package.
std::optional<QList<int>> packageCpus(const KernelFiles& files)
{
    const auto online = cpuList(files, "online");
    return siblings(files, online ? online->first() : 0, "package_cpus_list", "core_siblings_list");
}

} // namespace

QByteArray cpuPath(const QByteArray& rest)
{
    return "/sys/devices/system/cpu/" + rest;
}

std::optional<std::int64_t> physicalCores(const KernelFiles& files)
{
    const auto cores = coresOf(files, cpuList(files, "present").value_or(QList<int>()));
    return cores ? cores : listedCores(files);
}

std::optional<std::int64_t> virtualCores(const KernelFiles& files)
{
    if (const auto present = cpuList(files, "present")) {
        return present->size();
    }
    const long configured = sysconf(_SC_NPROCESSORS_CONF);
    return configured > 0 ? std::make_optional<std::int64_t>(configured) : std::nullopt;
}

std::optional<std::int64_t> cpusInPackage(const KernelFiles& files)
{
    const auto cpus = packageCpus(files);
    return cpus ? std::make_optional<std::int64_t>(cpus->size()) : std::nullopt;
}

std::optional<std::int64_t> coresInPackage(const KernelFiles& files)
{
    const auto cpus = packageCpus(files);
    return cpus ? coresOf(files, *cpus) : std::nullopt;
}

} // namespace norvex
