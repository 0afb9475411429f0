#include "systeminfo/mac/platform/live/processor.h"

#include <QSet>
#include <QSysInfo>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <set>
#include <unistd.h>
#include <utility>

#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#endif

namespace norvex {

namespace {

/// Where the facts come from.
struct Processor
{
    const Cpuid& cpuid;
    const KernelFiles& files;
};

using Answer = std::optional<QByteArray>;

Answer int32(std::optional<std::int64_t> value)
{
    return value ? Answer(sysctlBytes(std::int32_t(*value))) : std::nullopt;
}

Answer int64(std::optional<std::int64_t> value)
{
    return value ? Answer(sysctlBytes(*value)) : std::nullopt;
}

Answer text(const std::optional<QByteArray>& value)
{
    return value ? Answer(sysctlText(*value)) : std::nullopt;
}

// --- CPUID ---

std::optional<CpuidRegisters> leaf(const Processor& processor, std::uint32_t number)
{
    constexpr std::uint32_t extended = 0x80000000u;
    if (!processor.cpuid || processor.cpuid(number & extended).eax < number) {
        return std::nullopt;
    }
    return processor.cpuid(number);
}

void appendRegister(QByteArray& characters, std::uint32_t value)
{
    for (int shift = 0; shift < 32; shift += 8) {
        characters.append(char(value >> shift));
    }
}

/// Characters up to their first zero byte, without the blanks that fill their field.
QByteArray unpadded(const QByteArray& characters)
{
    return characters.split('\0').first().trimmed();
}

std::optional<QByteArray> vendor(const Processor& processor)
{
    const auto registers = leaf(processor, 0);
    if (!registers) {
        return std::nullopt;
    }
    QByteArray characters;
    for (const std::uint32_t value : {registers->ebx, registers->edx, registers->ecx}) {
        appendRegister(characters, value);
    }
    return unpadded(characters);
}

std::optional<QByteArray> brand(const Processor& processor)
{
    QByteArray characters;
    for (std::uint32_t part = 0x80000002u; part <= 0x80000004u; ++part) {
        const auto registers = leaf(processor, part);
        if (!registers) {
            return std::nullopt;
        }
        for (const std::uint32_t value : {registers->eax, registers->ebx, registers->ecx, registers->edx}) {
            appendRegister(characters, value);
        }
    }
    const QByteArray name = unpadded(characters);
    return name.isEmpty() ? std::nullopt : std::make_optional(name);
}

std::optional<std::int64_t> signatureBits(const Processor& processor, int shift, int width)
{
    const auto registers = leaf(processor, 1);
    if (!registers) {
        return std::nullopt;
    }
    return (registers->eax >> shift) & ((std::uint64_t(1) << width) - 1);
}

/// The family that the processor goes by: the extended one counts where the base cannot hold it.
std::optional<std::int64_t> family(const Processor& processor)
{
    const auto base = signatureBits(processor, 8, 4);
    return base && *base == 15 ? *base + *signatureBits(processor, 20, 8) : base;
}

std::optional<std::int64_t> model(const Processor& processor)
{
    const auto base = signatureBits(processor, 4, 4);
    const auto baseFamily = signatureBits(processor, 8, 4);
    return base && (*baseFamily == 6 || *baseFamily == 15) ? *base + (*signatureBits(processor, 16, 4) << 4)
                                                           : base;
}

struct Feature
{
    std::uint32_t CpuidRegisters::*where;
    int bit;
    const char* name;
};

/// The features of leaf 1 that a Mac lists, in its order and spelling.
constexpr Feature features[] = {
    {&CpuidRegisters::edx, 0, "FPU"},       {&CpuidRegisters::edx, 1, "VME"},
    {&CpuidRegisters::edx, 2, "DE"},        {&CpuidRegisters::edx, 3, "PSE"},
    {&CpuidRegisters::edx, 4, "TSC"},       {&CpuidRegisters::edx, 5, "MSR"},
    {&CpuidRegisters::edx, 6, "PAE"},       {&CpuidRegisters::edx, 7, "MCE"},
    {&CpuidRegisters::edx, 8, "CX8"},       {&CpuidRegisters::edx, 9, "APIC"},
    {&CpuidRegisters::edx, 11, "SEP"},      {&CpuidRegisters::edx, 12, "MTRR"},
    {&CpuidRegisters::edx, 13, "PGE"},      {&CpuidRegisters::edx, 14, "MCA"},
    {&CpuidRegisters::edx, 15, "CMOV"},     {&CpuidRegisters::edx, 16, "PAT"},
    {&CpuidRegisters::edx, 17, "PSE36"},    {&CpuidRegisters::edx, 18, "PSN"},
    {&CpuidRegisters::edx, 19, "CLFSH"},    {&CpuidRegisters::edx, 21, "DS"},
    {&CpuidRegisters::edx, 22, "ACPI"},     {&CpuidRegisters::edx, 23, "MMX"},
    {&CpuidRegisters::edx, 24, "FXSR"},     {&CpuidRegisters::edx, 25, "SSE"},
    {&CpuidRegisters::edx, 26, "SSE2"},     {&CpuidRegisters::edx, 27, "SS"},
    {&CpuidRegisters::edx, 28, "HTT"},      {&CpuidRegisters::edx, 29, "TM"},
    {&CpuidRegisters::edx, 31, "PBE"},      {&CpuidRegisters::ecx, 0, "SSE3"},
    {&CpuidRegisters::ecx, 1, "PCLMULQDQ"}, {&CpuidRegisters::ecx, 2, "DTES64"},
    {&CpuidRegisters::ecx, 3, "MON"},       {&CpuidRegisters::ecx, 4, "DSCPL"},
    {&CpuidRegisters::ecx, 5, "VMX"},       {&CpuidRegisters::ecx, 6, "SMX"},
    {&CpuidRegisters::ecx, 7, "EST"},       {&CpuidRegisters::ecx, 8, "TM2"},
    {&CpuidRegisters::ecx, 9, "SSSE3"},     {&CpuidRegisters::ecx, 10, "CID"},
    {&CpuidRegisters::ecx, 12, "FMA"},      {&CpuidRegisters::ecx, 13, "CX16"},
    {&CpuidRegisters::ecx, 14, "TPR"},      {&CpuidRegisters::ecx, 15, "PDCM"},
    {&CpuidRegisters::ecx, 19, "SSE4.1"},   {&CpuidRegisters::ecx, 20, "SSE4.2"},
    {&CpuidRegisters::ecx, 21, "x2APIC"},   {&CpuidRegisters::ecx, 22, "MOVBE"},
    {&CpuidRegisters::ecx, 23, "POPCNT"},   {&CpuidRegisters::ecx, 25, "AES"},
    {&CpuidRegisters::ecx, 31, "VMM"},      {&CpuidRegisters::ecx, 17, "PCID"},
    {&CpuidRegisters::ecx, 26, "XSAVE"},    {&CpuidRegisters::ecx, 27, "OSXSAVE"},
    {&CpuidRegisters::ecx, 11, "SEGLIM64"}, {&CpuidRegisters::ecx, 24, "TSCTMR"},
    {&CpuidRegisters::ecx, 28, "AVX1.0"},   {&CpuidRegisters::ecx, 30, "RDRAND"},
    {&CpuidRegisters::ecx, 29, "F16C"},
};

std::optional<QByteArray> featureNames(const Processor& processor)
{
    const auto registers = leaf(processor, 1);
    if (!registers) {
        return std::nullopt;
    }
    QByteArray names;
    for (const Feature& feature : features) {
        if ((((*registers).*(feature.where) >> feature.bit) & 1) == 0) {
            continue;
        }
        if (!names.isEmpty()) {
            names.append(' ');
        }
        names.append(feature.name);
    }
    return names;
}

// --- The Mach kernel's own numbers ---

/// A model of Intel's family 6 that Macs were built with.
struct MacProcessor
{
    int model;
    std::uint32_t machFamily;
    int machSubType;
};

constexpr int x86Architecture1 = 4;
constexpr int haswellFeatureSet = 8;

constexpr MacProcessor macProcessors[] = {
    {14, 0x73d67300, x86Architecture1},   // Yonah
    {15, 0x426f69ef, x86Architecture1},   // Merom
    {23, 0x78ea4fbc, x86Architecture1},   // Penryn
    {26, 0x6b5a4cd2, x86Architecture1},   // Nehalem: Bloomfield, Gainestown
    {30, 0x6b5a4cd2, x86Architecture1},   // Nehalem: Lynnfield
    {37, 0x573b5eec, x86Architecture1},   // Westmere: Arrandale, Clarkdale
    {44, 0x573b5eec, x86Architecture1},   // Westmere: Gulftown
    {42, 0x5490b78c, x86Architecture1},   // Sandy Bridge
    {58, 0x1f65e835, x86Architecture1},   // Ivy Bridge
    {62, 0x1f65e835, x86Architecture1},   // Ivy Bridge: Xeon E5
    {60, 0x10b282dc, haswellFeatureSet},  // Haswell
    {69, 0x10b282dc, haswellFeatureSet},  // Haswell: low voltage
    {70, 0x10b282dc, haswellFeatureSet},  // Haswell: Crystal Well
    {61, 0x582ed09c, haswellFeatureSet},  // Broadwell
    {71, 0x582ed09c, haswellFeatureSet},  // Broadwell: with eDRAM
    {78, 0x37fc219f, haswellFeatureSet},  // Skylake: mobile
    {94, 0x37fc219f, haswellFeatureSet},  // Skylake: desktop
    {85, 0x37fc219f, haswellFeatureSet},  // Skylake and Cascade Lake: Xeon W
    {142, 0x0f817246, haswellFeatureSet}, // Kaby Lake and its successors: mobile
    {158, 0x0f817246, haswellFeatureSet}, // Kaby Lake and its successors: desktop
    {126, 0x38435547, haswellFeatureSet}, // Ice Lake: mobile
    {165, 0x1cf8a03e, haswellFeatureSet}, // Comet Lake: desktop
};

const MacProcessor* macProcessor(const Processor& processor)
{
    if (vendor(processor) != QByteArray("GenuineIntel") || family(processor) != 6) {
        return nullptr;
    }
    const auto found =
        std::find_if(std::begin(macProcessors), std::end(macProcessors),
                     [id = *model(processor)](const auto& known) { return known.model == id; });
    return found == std::end(macProcessors) ? nullptr : found;
}

/// The type that the Mach kernel has for what this was compiled for. An Intel Mac gives the type without its
/// 64-bit flag, the others with it.
std::optional<std::int64_t> machType()
{
#if defined(__x86_64__) || defined(__i386__)
    return 7;
#elif defined(__aarch64__)
    return 0x0100000c;
#elif defined(__arm__)
    return 12;
#elif defined(__powerpc64__)
    return 0x01000012;
#elif defined(__powerpc__)
    return 18;
#else
    return std::nullopt;
#endif
}

std::optional<std::int64_t> is64BitCapable(const Processor& processor)
{
    if (sizeof(void*) == 8) {
        return 1;
    }
    constexpr int longMode = 29;
    const auto registers = leaf(processor, 0x80000001u);
    return registers ? std::make_optional<std::int64_t>((registers->edx >> longMode) & 1) : std::nullopt;
}

// --- Topology ---

QByteArray cpuPath(const QByteArray& rest)
{
    return "/sys/devices/system/cpu/" + rest;
}

/// The numbers in a list like "0-3,8"; absent for a file that is missing or no list.
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

/// The CPUs beside one of a kind, by either of the names that kernels have had for the kind.
std::optional<QList<int>> siblings(const KernelFiles& files, int cpu, const char* kind, const char* olderKind)
{
    const QByteArray folder = "cpu" + QByteArray::number(cpu) + "/topology/";
    const auto list = cpuList(files, folder + kind);
    return list ? list : cpuList(files, folder + olderKind);
}

/// How many cores the CPUs belong to. CPUs that are off have no topology and do not count.
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

/// The same from /proc/cpuinfo, for hosts whose /sys tells nothing about processors.
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

std::optional<std::int64_t> physicalCores(const Processor& processor)
{
    const auto cores = coresOf(processor.files, cpuList(processor.files, "present").value_or(QList<int>()));
    return cores ? cores : listedCores(processor.files);
}

std::optional<std::int64_t> virtualCores(const Processor& processor)
{
    if (const auto present = cpuList(processor.files, "present")) {
        return present->size();
    }
    const long configured = sysconf(_SC_NPROCESSORS_CONF);
    return configured > 0 ? std::make_optional<std::int64_t>(configured) : std::nullopt;
}

/// The CPUs of the first processor package. All packages of a machine are alike.
std::optional<QList<int>> packageCpus(const Processor& processor)
{
    const auto online = cpuList(processor.files, "online");
    return siblings(processor.files, online ? online->first() : 0, "package_cpus_list", "core_siblings_list");
}

std::optional<std::int64_t> cpusInPackage(const Processor& processor)
{
    const auto cpus = packageCpus(processor);
    return cpus ? std::make_optional<std::int64_t>(cpus->size()) : std::nullopt;
}

std::optional<std::int64_t> coresInPackage(const Processor& processor)
{
    const auto cpus = packageCpus(processor);
    return cpus ? coresOf(processor.files, *cpus) : std::nullopt;
}

// --- Microcode, clocks and caches ---

/// The first processor of /proc/cpuinfo, which needs no look at the others.
QByteArray firstListed(const KernelFiles& files)
{
    return files.contents("/proc/cpuinfo", 4096).value_or(QByteArray());
}

std::optional<std::int64_t> microcode(const Processor& processor)
{
    auto revision = processor.files.line(cpuPath("cpu0/microcode/version"));
    if (!revision) {
        revision = valueOfKey(firstListed(processor.files), "microcode", ':');
    }
    bool isNumber = false;
    const std::uint32_t value = revision ? revision->toUInt(&isNumber, 0) : 0;
    // A hypervisor that hides the revision shows all ones.
    constexpr std::uint32_t hidden = 0xffffffffu;
    return isNumber && value != hidden ? std::make_optional<std::int64_t>(value) : std::nullopt;
}

std::int64_t hertz(double megahertz)
{
    return std::llround(megahertz * 1e6);
}

/// The clock in a name like "Intel(R) Core(TM) i7-4850HQ CPU @ 2.30GHz".
std::optional<std::int64_t> brandClock(const Processor& processor)
{
    const QByteArray name = brand(processor).value_or(QByteArray());
    const QByteArray clock = name.mid(name.lastIndexOf('@') + 1).trimmed();
    const double unit = clock.endsWith("GHz") ? 1e9 : clock.endsWith("MHz") ? 1e6 : 0;
    const double value = clock.left(clock.size() - 3).toDouble();
    return unit > 0 && value > 0 ? std::make_optional<std::int64_t>(std::llround(value * unit))
                                 : std::nullopt;
}

/// The clock that the kernel measured when it started. With aperfmperf it shows that of the moment instead.
std::optional<std::int64_t> calibratedClock(const Processor& processor)
{
    const QByteArray listed = firstListed(processor.files);
    const auto flags = valueOfKey(listed, "flags", ':');
    const double megahertz = valueOfKey(listed, "cpu MHz", ':').value_or(QByteArray()).toDouble();
    if (!flags || flags->split(' ').contains("aperfmperf") || megahertz < 1) {
        return std::nullopt;
    }
    return hertz(megahertz);
}

std::optional<std::int64_t> highestClock(const Processor& processor)
{
    // The cores of one processor may differ.
    std::int64_t kilohertz = 0;
    for (const QByteArray& clock : processor.files.matching(cpuPath("cpufreq/policy*/cpuinfo_max_freq"))) {
        kilohertz = qMax(kilohertz, std::int64_t(processor.files.number(clock).value_or(0)));
    }
    if (kilohertz > 0) {
        return kilohertz * 1000;
    }
    const auto frequencies = leaf(processor, 0x16);
    if (frequencies && (frequencies->ebx & 0xffff) != 0) {
        return hertz(frequencies->ebx & 0xffff);
    }
    const auto named = brandClock(processor);
    return named ? named : calibratedClock(processor);
}

std::optional<std::int64_t> busClock(const Processor& processor)
{
    const auto frequencies = leaf(processor, 0x16);
    if (!frequencies || (frequencies->ecx & 0xffff) == 0) {
        return std::nullopt;
    }
    return hertz(frequencies->ecx & 0xffff);
}

/// The size of a cache of the first processor: the C library's, or the kernel's where that knows none.
std::optional<std::int64_t> cacheSize(const Processor& processor, int name, const char* level,
                                      const char* type)
{
    const long bytes = sysconf(name);
    if (bytes > 0) {
        return bytes;
    }
    for (const QByteArray& cache : processor.files.matching(cpuPath("cpu0/cache/index*"))) {
        const auto kind = processor.files.line(cache + "/type");
        const QByteArray size = processor.files.line(cache + "/size").value_or(QByteArray());
        if (processor.files.line(cache + "/level") != QByteArray(level) || !size.endsWith('K') ||
            (kind != QByteArray(type) && kind != QByteArray("Unified"))) {
            continue;
        }
        const std::int64_t kilobytes = size.chopped(1).toLongLong();
        if (kilobytes > 0) {
            return kilobytes * 1024;
        }
    }
    return std::nullopt;
}

// --- The names ---

struct Fact
{
    const char* name;
    Answer (*answer)(const Processor&);
};

constexpr Fact facts[] = {
    {"hw.physicalcpu_max", [](const Processor& p) { return int32(physicalCores(p)); }},
    {"hw.ncpu", [](const Processor& p) { return int32(virtualCores(p)); }},
    {"hw.cputype", [](const Processor&) { return int32(machType()); }},
    {"hw.cpusubtype",
     [](const Processor& p) {
         const MacProcessor* const known = macProcessor(p);
         return known == nullptr ? std::nullopt : int32(known->machSubType);
     }},
    {"hw.cpufamily",
     [](const Processor& p) {
         const MacProcessor* const known = macProcessor(p);
         return known == nullptr ? std::nullopt : int32(known->machFamily);
     }},
    {"hw.cpu64bit_capable", [](const Processor& p) { return int32(is64BitCapable(p)); }},
    {"machdep.cpu.vendor", [](const Processor& p) { return text(vendor(p)); }},
    {"machdep.cpu.brand_string", [](const Processor& p) { return text(brand(p)); }},
    {"machdep.cpu.family", [](const Processor& p) { return int32(family(p)); }},
    {"machdep.cpu.model", [](const Processor& p) { return int32(model(p)); }},
    {"machdep.cpu.extmodel", [](const Processor& p) { return int32(signatureBits(p, 16, 4)); }},
    {"machdep.cpu.extfamily", [](const Processor& p) { return int32(signatureBits(p, 20, 8)); }},
    {"machdep.cpu.stepping", [](const Processor& p) { return int32(signatureBits(p, 0, 4)); }},
    {"machdep.cpu.signature", [](const Processor& p) { return int32(signatureBits(p, 0, 32)); }},
    {"machdep.cpu.microcode_version", [](const Processor& p) { return int32(microcode(p)); }},
    {"machdep.cpu.logical_per_package", [](const Processor& p) { return int32(cpusInPackage(p)); }},
    {"machdep.cpu.cores_per_package", [](const Processor& p) { return int32(coresInPackage(p)); }},
    {"machdep.cpu.features", [](const Processor& p) { return text(featureNames(p)); }},
    {"hw.cpufrequency_max", [](const Processor& p) { return int64(highestClock(p)); }},
    {"hw.busfrequency_max", [](const Processor& p) { return int64(busClock(p)); }},
    {"hw.l1dcachesize",
     [](const Processor& p) { return int64(cacheSize(p, _SC_LEVEL1_DCACHE_SIZE, "1", "Data")); }},
    {"hw.l1icachesize",
     [](const Processor& p) { return int64(cacheSize(p, _SC_LEVEL1_ICACHE_SIZE, "1", "Instruction")); }},
    {"hw.l2cachesize",
     [](const Processor& p) { return int64(cacheSize(p, _SC_LEVEL2_CACHE_SIZE, "2", "Data")); }},
    {"hw.l3cachesize",
     [](const Processor& p) { return int64(cacheSize(p, _SC_LEVEL3_CACHE_SIZE, "3", "Data")); }},
    {"hw.byteorder",
     [](const Processor&) { return int32(QSysInfo::ByteOrder == QSysInfo::BigEndian ? 4321 : 1234); }},
};

} // namespace

Cpuid hostCpuid()
{
#if defined(__x86_64__) || defined(__i386__)
    return [](std::uint32_t number) {
        CpuidRegisters registers;
        __cpuid_count(number, 0, registers.eax, registers.ebx, registers.ecx, registers.edx);
        return registers;
    };
#else
    return {};
#endif
}

std::optional<QByteArray> processorSysctl(const QByteArray& name, const Cpuid& cpuid,
                                          const KernelFiles& files)
{
    const auto fact = std::find_if(std::begin(facts), std::end(facts),
                                   [&name](const Fact& known) { return name == known.name; });
    return fact == std::end(facts) ? std::nullopt : fact->answer({cpuid, files});
}

} // namespace norvex
