#pragma once

#include <cstdint>

#include "kernels/Types.h"

/**
 * @file
 * What CPUID says, and what follows from it. The decisions are functions of plain data, so that they can be tried with
 * the registers of any CPU.
 */
namespace kernels {

struct CpuidLeaf {
    std::uint32_t eax;
    std::uint32_t ebx;
    std::uint32_t ecx;
    std::uint32_t edx;
};

/// The registers that the features are read from.
struct CpuidRegisters {
    CpuidLeaf leaf0;
    CpuidLeaf leaf1;
    CpuidLeaf leaf7;        ///< counts only if leaf 0 reports it
    CpuidLeaf extendedLeaf; ///< 0x80000001
    std::uint64_t xcr0;     ///< register 0 of XGETBV, 0 if the operating system does not use it
};

/// Reads the registers of this CPU. False if it has no CPUID.
bool readCpuid(CpuidRegisters &registers);

/// The mask of features as the bits of Dispatch.h.
Ipp64u featuresOf(const CpuidRegisters &registers);

/// True for the vendor that ippInit does not warn about.
bool isGenuineIntel(const CpuidLeaf &leaf0);

/// selectCpuLevel with the features that the CPU has. The mask's top bit turns the comparison with them off.
IppStatus selectLevel(Ipp64u mask, Ipp64u available, int &level, Ipp64u &completedMask);

} // namespace kernels
