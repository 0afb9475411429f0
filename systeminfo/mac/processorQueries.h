#pragma once

namespace norvex::SystemInfo::MacSysInfo {

/// What the value behind a processor query is, and how it prints.
enum class ProcessorValue {
    Unsigned,   ///< a 32-bit integer
    Signed,     ///< a 32-bit integer
    Text,       ///< a string
    ClockSpeed, ///< a 64-bit integer, in hertz
    CacheSize,  ///< a 64-bit integer, in bytes
    Type,       ///< a 32-bit integer, Mach's processor type
    SubType,    ///< a 32-bit integer, whose meaning depends on the type
    Family,     ///< a 32-bit integer, Mach's processor family
    ByteOrder   ///< a 32-bit integer, 1234 or 4321
};

/// A line of the processor section, and the query that it shows.
struct ProcessorQuery
{
    const char* label;
    const char* name; ///< for `sysctlbyname`
    ProcessorValue value;
};

/// The queries of the processor section in the order of its lines. The recorder makes the same ones.
constexpr ProcessorQuery processorQueries[] = {
    {"Number of physical cores: ", "hw.physicalcpu_max", ProcessorValue::Unsigned},
    {"Number of virtual cores: ", "hw.ncpu", ProcessorValue::Unsigned},
    {"CPU type: ", "hw.cputype", ProcessorValue::Type},
    {"CPU sub type: ", "hw.cpusubtype", ProcessorValue::SubType},
    {"CPU family: ", "hw.cpufamily", ProcessorValue::Family},
    {"CPU 64bit capable: ", "hw.cpu64bit_capable", ProcessorValue::Signed},
    {"CPU vendor: ", "machdep.cpu.vendor", ProcessorValue::Text},
    {"CPU brand name: ", "machdep.cpu.brand_string", ProcessorValue::Text},
    {"CPU family: ", "machdep.cpu.family", ProcessorValue::Signed},
    {"CPU model: ", "machdep.cpu.model", ProcessorValue::Signed},
    {"CPU extmodel: ", "machdep.cpu.extmodel", ProcessorValue::Signed},
    {"CPU extfamily: ", "machdep.cpu.extfamily", ProcessorValue::Signed},
    {"CPU stepping: ", "machdep.cpu.stepping", ProcessorValue::Signed},
    {"CPU signature: ", "machdep.cpu.signature", ProcessorValue::Signed},
    {"CPU microcode version: ", "machdep.cpu.microcode_version", ProcessorValue::Signed},
    {"CPU logical per package: ", "machdep.cpu.logical_per_package", ProcessorValue::Signed},
    {"CPU cores per package: ", "machdep.cpu.cores_per_package", ProcessorValue::Signed},
    {"CPU features: ", "machdep.cpu.features", ProcessorValue::Text},
    {"Processor clock speed: ", "hw.cpufrequency_max", ProcessorValue::ClockSpeed},
    {"Bus clock speed: ", "hw.busfrequency_max", ProcessorValue::ClockSpeed},
    {"L1 Data Cache size: ", "hw.l1dcachesize", ProcessorValue::CacheSize},
    {"L1 Instruction Cache size: ", "hw.l1icachesize", ProcessorValue::CacheSize},
    {"L2 Cache size: ", "hw.l2cachesize", ProcessorValue::CacheSize},
    {"L3 Cache size: ", "hw.l3cachesize", ProcessorValue::CacheSize},
    {"Byte order: ", "hw.byteorder", ProcessorValue::ByteOrder},
};

} // namespace norvex::SystemInfo::MacSysInfo
