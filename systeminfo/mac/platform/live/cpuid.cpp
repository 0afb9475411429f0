#include "systeminfo/mac/platform/live/cpuid.h"

#include <QList>

#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#endif

namespace norvex {

namespace {

void appendRegister(QByteArray& characters, std::uint32_t value)
{
    for (int shift = 0; shift < 32; shift += 8) {
        characters.append(char(value >> shift));
    }
}

/// The characters up to the first zero byte, without the blanks that fill their field.
QByteArray unpadded(const QByteArray& characters)
{
    return characters.split('\0').first().trimmed();
}

struct Feature
{
    std::uint32_t CpuidRegisters::*inRegister;
    int bit;
    const char* name;
};

/// The features that a Mac lists, in its order.
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

} // namespace

Cpuid hostCpuid()
{
#if defined(__x86_64__) || defined(__i386__)
    return [](std::uint32_t leaf) {
        CpuidRegisters registers;
        __cpuid_count(leaf, 0, registers.eax, registers.ebx, registers.ecx, registers.edx);
        return registers;
    };
#else
    return {};
#endif
}

std::optional<CpuidRegisters> cpuidLeaf(const Cpuid& cpuid, std::uint32_t leaf)
{
    // The first basic leaf holds the number of the last one, and so does the first extended leaf.
    constexpr std::uint32_t extended = 0x80000000u;
    if (!cpuid || cpuid(leaf & extended).eax < leaf) {
        return std::nullopt;
    }
    return cpuid(leaf);
}

std::optional<QByteArray> cpuidVendor(const Cpuid& cpuid)
{
    const auto registers = cpuidLeaf(cpuid, 0);
    if (!registers) {
        return std::nullopt;
    }
    QByteArray characters;
    for (const std::uint32_t value : {registers->ebx, registers->edx, registers->ecx}) {
        appendRegister(characters, value);
    }
    return unpadded(characters);
}

std::optional<QByteArray> cpuidBrand(const Cpuid& cpuid)
{
    QByteArray characters;
    for (std::uint32_t leaf = 0x80000002u; leaf <= 0x80000004u; ++leaf) {
        const auto registers = cpuidLeaf(cpuid, leaf);
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

std::optional<std::int64_t> cpuidSignature(const Cpuid& cpuid, int lowest, int width)
{
    const auto registers = cpuidLeaf(cpuid, 1);
    if (!registers) {
        return std::nullopt;
    }
    return (registers->eax >> lowest) & ((std::uint64_t(1) << width) - 1);
}

std::optional<std::int64_t> cpuidFamily(const Cpuid& cpuid)
{
    const auto base = cpuidSignature(cpuid, 8, 4);
    return base && *base == 15 ? *base + *cpuidSignature(cpuid, 20, 8) : base;
}

std::optional<std::int64_t> cpuidModel(const Cpuid& cpuid)
{
    const auto base = cpuidSignature(cpuid, 4, 4);
    const auto baseFamily = cpuidSignature(cpuid, 8, 4);
    return base && (*baseFamily == 6 || *baseFamily == 15) ? *base + (*cpuidSignature(cpuid, 16, 4) << 4)
                                                           : base;
}

std::optional<QByteArray> cpuidFeatures(const Cpuid& cpuid)
{
    const auto registers = cpuidLeaf(cpuid, 1);
    if (!registers) {
        return std::nullopt;
    }
    QByteArray names;
    for (const Feature& feature : features) {
        if ((((*registers).*(feature.inRegister) >> feature.bit) & 1) == 0) {
            continue;
        }
        if (!names.isEmpty()) {
            names.append(' ');
        }
        names.append(feature.name);
    }
    return names;
}

std::optional<std::int64_t> is64BitCapable(const Cpuid& cpuid)
{
    if (sizeof(void*) == 8) {
        return 1;
    }
    constexpr int longMode = 29;
    const auto registers = cpuidLeaf(cpuid, 0x80000001u);
    return registers ? std::make_optional<std::int64_t>((registers->edx >> longMode) & 1) : std::nullopt;
}

} // namespace norvex
