#pragma once

/// @file
/// What the CPUID instruction says about a processor.

#include <QByteArray>

#include <cstdint>
#include <functional>
#include <optional>

namespace norvex {

struct CpuidRegisters
{
    std::uint32_t eax = 0;
    std::uint32_t ebx = 0;
    std::uint32_t ecx = 0;
    std::uint32_t edx = 0;
};

/// Runs the CPUID instruction for a leaf (and subleaf 0); an empty function for a processor that lacks the instruction.
using Cpuid = std::function<CpuidRegisters(std::uint32_t leaf)>;

/// The instruction of the processor that the calling thread runs on.
Cpuid hostCpuid();

/// The registers of a leaf; absent when the processor lacks it. The results of all functions below are absent when a
/// leaf that they need is.
std::optional<CpuidRegisters> cpuidLeaf(const Cpuid& cpuid, std::uint32_t leaf);

/// The vendor, such as "GenuineIntel".
std::optional<QByteArray> cpuidVendor(const Cpuid& cpuid);
/// The processor's full name.
std::optional<QByteArray> cpuidBrand(const Cpuid& cpuid);
/// A field of the processor's signature: @p width bits, from bit @p lowest up.
std::optional<std::int64_t> cpuidSignature(const Cpuid& cpuid, int lowest, int width);
/// The family, with the extended family where the base family refers to it.
std::optional<std::int64_t> cpuidFamily(const Cpuid& cpuid);
/// The model, with the extended model in the families that have one.
std::optional<std::int64_t> cpuidModel(const Cpuid& cpuid);
/// The features of leaf 1, separated by blanks, in the order and spelling of a Mac.
std::optional<QByteArray> cpuidFeatures(const Cpuid& cpuid);
/// Whether the processor runs 64-bit code: 1 or 0.
std::optional<std::int64_t> is64BitCapable(const Cpuid& cpuid);

} // namespace norvex
