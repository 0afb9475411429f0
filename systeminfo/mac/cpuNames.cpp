#include "systeminfo/mac/cpuNames.h"

#include <cstddef>

namespace norvex::SystemInfo::MacSysInfo {

namespace {

template <typename Code>
struct Name
{
    Code code;
    const char* name;
};

using SubTypeName = Name<std::int32_t>;

template <typename Code, std::size_t size>
const char* nameOf(Code code, const Name<Code> (&names)[size], const char* other)
{
    for (const Name<Code>& candidate : names) {
        if (candidate.code == code) {
            return candidate.name;
        }
    }
    return other;
}

const Name<std::uint32_t> types[] = {
    {1, "VAX "},  {6, "68k "},      {7, "x86 "},    {10, "MC98000 "}, {11, "HPPA "},
    {12, "ARM "}, {13, "MC88000 "}, {14, "SPARC "}, {15, "i860 "},    {18, "PowerPC "},
};

const SubTypeName vaxSubTypes[] = {
    {1, "VAX780"},  {2, "VAX785"},  {3, "VAX750"},  {4, "VAX730"},   {5, "UVAX I"},   {6, "UVAX II"},
    {7, "VAX8200"}, {8, "VAX8500"}, {9, "VAX8600"}, {10, "VAX8650"}, {11, "VAX8800"}, {12, "UVAX III"},
};

const SubTypeName motorola68kSubTypes[] = {
    {1, "MC68030 (kept for compatibility)"},
    {2, "MC68040"},
    {3, "MC68030"},
};

const SubTypeName mc98000SubTypes[] = {
    {1, "MC98601"},
};

const SubTypeName hppaSubTypes[] = {
    {0, "HPPA 7100"},
    {1, "HPPA 7100LC"},
};

const SubTypeName armSubTypes[] = {
    {5, "ARM V4T"}, {6, "ARM V6"}, {7, "ARM V5TEJ"}, {8, "ARM XSCALE"}, {9, "ARM V7"},
};

const SubTypeName mc88000SubTypes[] = {
    {1, "MC88100"},
    {2, "MC88110"},
};

const SubTypeName i860SubTypes[] = {
    {1, "i860"},
};

const SubTypeName powerPcSubTypes[] = {
    {1, "PowerPC 601"},   {2, "PowerPC 602"},   {3, "PowerPC 603"},   {4, "PowerPC 603e"},
    {5, "PowerPC 603ev"}, {6, "PowerPC 604"},   {7, "PowerPC 604e"},  {8, "PowerPC 620"},
    {9, "PowerPC 750"},   {10, "PowerPC 7400"}, {11, "PowerPC 7450"}, {100, "PowerPC 7450"},
};

/// What the numbers mean on machines that have no Mach family.
const SubTypeName classicX86SubTypes[] = {
    {3, "386"},
    {4, "486"},
    {5, "Pentium"},
    {8, "Pentium III"},
    {9, "Pentium M"},
    {10, "Pentium 4"},
    {11, "Itanium"},
    {12, "Xeon"},
    {22, "PentiumPro"},
    {24, "Pentium III M"},
    {26, "Pentium 4 Mobile"},
    {27, "Itanium 2"},
    {28, "Xeon MP"},
    {40, "Pentium III Xeon"},
    {54, "Pentium II M3"},
    {86, "Pentium II M5"},
    {103, "Celeron"},
    {119, "Celeron Mobile"},
    {132, "486SX"},
};

const SubTypeName x86SubTypes[] = {
    {3, "X86_64 all"},
    {4, "X86 Arch1 (more info via Family)"},
    {8, "X86_64 Haswell feature set"},
};

const Name<std::uint32_t> families[] = {
    {0x0cc90e64, "ARM 13"},
    {0x0f817246, "Intel Family 6, 'Kabylake'"},
    {0x10b282dc, "Intel Family 6, 'Haswell'"},
    {0x1f65e835, "Intel Family 6, 'Ivy Bridge'"},
    {0x37fc219f, "Intel Family 6, 'Skylake'"},
    {0x426f69ef, "Intel Family 6, Model 15, Core 2, 'Merom'"},
    {0x53b005f5, "ARM XSCALE"},
    {0x5490b78c, "Intel Family 6, 'Sandy Bridge'"},
    {0x573b5eec, "Intel Family 6, 'Westmere'"},
    {0x582ed09c, "Intel Family 6, 'Broadwell'"},
    {0x6b5a4cd2, "Intel Family 6, 'Nehalem'"},
    {0x73d67300, "Intel Family 6, Model 14, Core Solo or Core Duo, 'Yonah'"},
    {0x77c184ae, "PowerPC G4"},
    {0x8ff620d8, "ARM 11"},
    {0x96077ef1, "ARM 14"},
    {0xaa33392b, "Intel Family 6, Model 13"},
    {0xcee41549, "PowerPC G3"},
    {0xe73283ae, "ARM 9"},
    {0xed76d8aa, "PowerPC G5"},
};

constexpr const char* unknown = "unknown";

const char* subTypeName(std::uint32_t type, std::int32_t subType, bool hasFamily)
{
    switch (type) {
    case 1: return nameOf(subType, vaxSubTypes, unknown);
    case 6: return nameOf(subType, motorola68kSubTypes, unknown);
    case cpuTypeX86:
        return hasFamily ? nameOf(subType, x86SubTypes, unknown)
                         : nameOf(subType, classicX86SubTypes, unknown);
    case 10: return nameOf(subType, mc98000SubTypes, "unknwon");
    case 11: return nameOf(subType, hppaSubTypes, unknown);
    case 12: return nameOf(subType, armSubTypes, unknown);
    case 13: return nameOf(subType, mc88000SubTypes, unknown);
    case 14: return "< No known CPU sub types for SPARC >";
    case 15: return nameOf(subType, i860SubTypes, unknown);
    case 18: return nameOf(subType, powerPcSubTypes, unknown);
    default: return "unknown because of unknown cpuType";
    }
}

} // namespace

QString cpuTypeName(std::uint32_t type)
{
    return QString::fromLatin1(nameOf(type, types, unknown));
}

QString cpuSubTypeName(std::uint32_t type, std::int32_t subType, bool hasFamily)
{
    return QString::fromLatin1(subTypeName(type, subType, hasFamily));
}

QString cpuFamilyName(std::uint32_t family)
{
    return QString::fromLatin1(nameOf(family, families, unknown));
}

QString penrynFamilyName(std::optional<std::int32_t> model)
{
    constexpr std::int32_t penrynModel = 23;
    if (!model) {
        return QStringLiteral("Intel Family 6, (no CPU model info)");
    }
    if (*model == penrynModel) {
        return QStringLiteral("Intel Family 6, Model 23, Core 2, 'Penryn'");
    }
    return QStringLiteral("Intel Family 6, 'Haswell'");
}

} // namespace norvex::SystemInfo::MacSysInfo
