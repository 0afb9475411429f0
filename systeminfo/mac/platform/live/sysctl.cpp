#include "systeminfo/mac/platform/live/sysctl.h"

#include "systeminfo/mac/platform/live/cpuTopology.h"
#include "systeminfo/mac/platform/live/kernel.h"
#include "systeminfo/mac/platform/live/machCpu.h"
#include "systeminfo/mac/platform/live/processor.h"
#include "systeminfo/mac/platform/sysctlValue.h"

#include <QSysInfo>

#include <map>

namespace norvex {

namespace {

using Bytes = std::optional<QByteArray>;

Bytes text(const std::optional<QByteArray>& value)
{
    return value ? Bytes(sysctlTextBytes(*value)) : std::nullopt;
}

Bytes int32(std::optional<std::int64_t> value)
{
    return value ? Bytes(sysctlIntegerBytes(std::int32_t(*value))) : std::nullopt;
}

Bytes int64(std::optional<std::int64_t> value)
{
    return value ? Bytes(sysctlIntegerBytes(*value)) : std::nullopt;
}

Bytes time(std::optional<std::int64_t> seconds)
{
    return seconds ? Bytes(sysctlTimeBytes(*seconds)) : std::nullopt;
}

struct Host
{
    const Cpuid& cpuid;
    const KernelFiles& files;
};

using Query = Bytes (*)(const Host&);

const std::map<QByteArray, Query>& queries()
{
    static const std::map<QByteArray, Query> all = {
        {"kern.osversion", [](const Host&) { return text(kernelBuild()); }},
        {"kern.version", [](const Host& host) { return text(kernelVersion(host.files)); }},
        {"kern.boottime", [](const Host& host) { return time(bootTime(host.files)); }},
        {"hw.machine", [](const Host&) { return text(machineHardware()); }},
        {"hw.model", [](const Host& host) { return text(machineModel(host.files)); }},
        {"hw.byteorder",
         [](const Host&) { return int32(QSysInfo::ByteOrder == QSysInfo::BigEndian ? 4321 : 1234); }},
        {"hw.physicalcpu_max", [](const Host& host) { return int32(physicalCores(host.files)); }},
        {"hw.ncpu", [](const Host& host) { return int32(virtualCores(host.files)); }},
        {"hw.cputype", [](const Host&) { return int32(machCpuType()); }},
        {"hw.cpusubtype", [](const Host& host) { return int32(machCpuSubtype(host.cpuid)); }},
        {"hw.cpufamily", [](const Host& host) { return int32(machCpuFamily(host.cpuid)); }},
        {"hw.cpu64bit_capable", [](const Host& host) { return int32(is64BitCapable(host.cpuid)); }},
        {"hw.cpufrequency_max", [](const Host& host) { return int64(highestClock(host.cpuid, host.files)); }},
        {"hw.busfrequency_max", [](const Host& host) { return int64(busClock(host.cpuid)); }},
        {"hw.l1dcachesize", [](const Host& host) { return int64(cacheSize(Cache::Level1Data, host.files)); }},
        {"hw.l1icachesize",
         [](const Host& host) { return int64(cacheSize(Cache::Level1Instructions, host.files)); }},
        {"hw.l2cachesize", [](const Host& host) { return int64(cacheSize(Cache::Level2, host.files)); }},
        {"hw.l3cachesize", [](const Host& host) { return int64(cacheSize(Cache::Level3, host.files)); }},
        {"machdep.cpu.vendor", [](const Host& host) { return text(cpuidVendor(host.cpuid)); }},
        {"machdep.cpu.brand_string", [](const Host& host) { return text(cpuidBrand(host.cpuid)); }},
        {"machdep.cpu.family", [](const Host& host) { return int32(cpuidFamily(host.cpuid)); }},
        {"machdep.cpu.model", [](const Host& host) { return int32(cpuidModel(host.cpuid)); }},
        {"machdep.cpu.extmodel", [](const Host& host) { return int32(cpuidSignature(host.cpuid, 16, 4)); }},
        {"machdep.cpu.extfamily", [](const Host& host) { return int32(cpuidSignature(host.cpuid, 20, 8)); }},
        {"machdep.cpu.stepping", [](const Host& host) { return int32(cpuidSignature(host.cpuid, 0, 4)); }},
        {"machdep.cpu.signature", [](const Host& host) { return int32(cpuidSignature(host.cpuid, 0, 32)); }},
        {"machdep.cpu.features", [](const Host& host) { return text(cpuidFeatures(host.cpuid)); }},
        {"machdep.cpu.microcode_version",
         [](const Host& host) { return int32(microcodeRevision(host.files)); }},
        {"machdep.cpu.logical_per_package",
         [](const Host& host) { return int32(cpusInPackage(host.files)); }},
        {"machdep.cpu.cores_per_package", [](const Host& host) { return int32(coresInPackage(host.files)); }},
    };
    return all;
}

} // namespace

std::optional<QByteArray> hostSysctl(const QByteArray& name, const Cpuid& cpuid, const KernelFiles& files)
{
    const auto query = queries().find(name);
    return query == queries().end() ? std::nullopt : query->second({cpuid, files});
}

} // namespace norvex
