#include "systeminfo/mac/platform/live/machCpu.h"

#include <algorithm>
#include <iterator>

namespace norvex {

namespace {

/// A model of Intel's family 6 that Macs were built with.
struct MacProcessor
{
    int model;
    std::uint32_t family;
    int subtype;
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

const MacProcessor* macProcessor(const Cpuid& cpuid)
{
    if (cpuidVendor(cpuid) != QByteArray("GenuineIntel") || cpuidFamily(cpuid) != 6) {
        return nullptr;
    }
    const auto found = std::find_if(
        std::begin(macProcessors), std::end(macProcessors),
        [model = *cpuidModel(cpuid)](const auto& candidate) { return candidate.model == model; });
    return found == std::end(macProcessors) ? nullptr : found;
}

} // namespace

std::optional<std::int64_t> machCpuType()
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

std::optional<std::int64_t> machCpuSubtype(const Cpuid& cpuid)
{
    const MacProcessor* const processor = macProcessor(cpuid);
    return processor == nullptr ? std::nullopt : std::make_optional<std::int64_t>(processor->subtype);
}

std::optional<std::int64_t> machCpuFamily(const Cpuid& cpuid)
{
    const MacProcessor* const processor = macProcessor(cpuid);
    return processor == nullptr ? std::nullopt : std::make_optional<std::int64_t>(processor->family);
}

} // namespace norvex
