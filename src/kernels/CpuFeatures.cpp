#include "kernels/CpuFeatures.h"

#include "kernels/CpuLevels.h"
#include "kernels/Dispatch.h"
#include "kernels/Status.h"

#if defined(__x86_64__)
#include <cpuid.h>
#endif

namespace kernels {

namespace {

constexpr Ipp64u avx512Set =
    ippCPUID_AVX512F | ippCPUID_AVX512CD | ippCPUID_AVX512BW | ippCPUID_AVX512DQ | ippCPUID_AVX512VL;
constexpr Ipp64u avx512ManyCoreSet = ippCPUID_AVX512F | ippCPUID_AVX512CD | ippCPUID_AVX512ER | ippCPUID_AVX512PF;
constexpr Ipp64u avx512Bits = avx512Set | avx512ManyCoreSet;
constexpr Ipp64u knownBits = 0x7FFFFFF;

/// What the code of each level needs.
constexpr Ipp64u neededBy(CpuLevel level) {
#define SONVEX_NEEDED(argument, name, needed, vectorBytes, flags) needed,
    constexpr Ipp64u needed[] = {SONVEX_CPU_LEVELS(SONVEX_NEEDED, )};
#undef SONVEX_NEEDED
    return needed[static_cast<int>(level)];
}

struct LevelRow {
    Ipp64u condition; ///< the level is chosen when the mask holds all of these
    Ipp64u needed;
    CpuLevel level;
};

constexpr LevelRow levelRows[] = {
    {avx512Set, neededBy(CpuLevel::avx2) | avx512Set, CpuLevel::avx2},
    {avx512ManyCoreSet, neededBy(CpuLevel::avx2) | avx512ManyCoreSet, CpuLevel::avx2},
    {ippCPUID_AVX2, neededBy(CpuLevel::avx2), CpuLevel::avx2},
    {ippCPUID_AVX, neededBy(CpuLevel::avx), CpuLevel::avx},
    {ippCPUID_SSE42, neededBy(CpuLevel::sse42), CpuLevel::sse42},
    {ippCPUID_SSE41, 0x5F, CpuLevel::ssse3},
    {ippCPUID_MOVBE, 0x3F, CpuLevel::ssse3},
    {ippCPUID_SSSE3, neededBy(CpuLevel::ssse3), CpuLevel::ssse3},
    {ippCPUID_SSE3, 0xF, CpuLevel::plain},
    {ippCPUID_SSE2, neededBy(CpuLevel::plain), CpuLevel::plain},
    {ippCPUID_SSE, 3, CpuLevel::plain},
};

struct FeatureBit {
    Ipp64u feature;
    std::uint32_t CpuidLeaf::*reg;
    int bit;
};

constexpr FeatureBit leaf1Features[] = {
    {ippCPUID_MMX, &CpuidLeaf::edx, 23},   {ippCPUID_SSE, &CpuidLeaf::edx, 25},
    {ippCPUID_SSE2, &CpuidLeaf::edx, 26},  {ippCPUID_SSE3, &CpuidLeaf::ecx, 0},
    {ippCPUID_SSSE3, &CpuidLeaf::ecx, 9},  {ippCPUID_MOVBE, &CpuidLeaf::ecx, 22},
    {ippCPUID_SSE41, &CpuidLeaf::ecx, 19}, {ippCPUID_SSE42, &CpuidLeaf::ecx, 20},
    {ippCPUID_AVX, &CpuidLeaf::ecx, 28},   {ippCPUID_AES, &CpuidLeaf::ecx, 25},
    {ippCPUID_CLMUL, &CpuidLeaf::ecx, 1},  {ippCPUID_RDRAND, &CpuidLeaf::ecx, 30},
    {ippCPUID_F16C, &CpuidLeaf::ecx, 29},
};

constexpr FeatureBit leaf7Features[] = {
    {ippCPUID_ADX, &CpuidLeaf::ebx, 19},      {ippCPUID_RDSEED, &CpuidLeaf::ebx, 18},
    {ippCPUID_SHA, &CpuidLeaf::ebx, 29},      {ippCPUID_AVX512F, &CpuidLeaf::ebx, 16},
    {ippCPUID_AVX512CD, &CpuidLeaf::ebx, 28}, {ippCPUID_AVX512ER, &CpuidLeaf::ebx, 27},
    {ippCPUID_AVX512PF, &CpuidLeaf::ebx, 26}, {ippCPUID_AVX512BW, &CpuidLeaf::ebx, 30},
    {ippCPUID_AVX512DQ, &CpuidLeaf::ebx, 17}, {ippCPUID_AVX512VL, &CpuidLeaf::ebx, 31},
};

bool has(std::uint32_t value, int bit) {
    return (value >> bit & 1U) != 0;
}

template <std::size_t amount>
Ipp64u collect(const FeatureBit (&features)[amount], const CpuidLeaf &leaf) {
    Ipp64u mask = 0;
    for (const FeatureBit &feature : features) {
        if (has(leaf.*feature.reg, feature.bit)) {
            mask |= feature.feature;
        }
    }
    return mask;
}

} // namespace

bool readCpuid(CpuidRegisters &registers) {
#if defined(__x86_64__)
    // Every CPU of this family has CPUID, so there is no flag to be toggled first.
    const auto read = [](unsigned leaf, CpuidLeaf &to) { __cpuid_count(leaf, 0, to.eax, to.ebx, to.ecx, to.edx); };
    registers = {};
    read(0, registers.leaf0);
    read(1, registers.leaf1);
    if (registers.leaf0.eax >= 7) {
        read(7, registers.leaf7);
    }
    CpuidLeaf extended{};
    read(0x80000000U, extended);
    if (extended.eax >= 0x80000001U) {
        read(0x80000001U, registers.extendedLeaf);
    }
    if (has(registers.leaf1.ecx, 27)) {
        std::uint32_t low = 0;
        std::uint32_t high = 0;
        asm volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
        registers.xcr0 = std::uint64_t{high} << 32U | low;
    }
    return true;
#else
    registers = {};
    return false;
#endif
}

Ipp64u featuresOf(const CpuidRegisters &registers) {
    Ipp64u mask = collect(leaf1Features, registers.leaf1);
    const std::uint32_t ecx = registers.leaf1.ecx;
    if (has(ecx, 27) && has(ecx, 28) && (registers.xcr0 & 6U) == 6U) {
        mask |= ippAVX_ENABLEDBYOS;
    }
    if (registers.leaf0.eax >= 7) {
        mask |= collect(leaf7Features, registers.leaf7);
        const std::uint32_t ebx = registers.leaf7.ebx;
        if (has(ebx, 5) && has(ecx, 12) && has(ebx, 3) && has(ebx, 8)) {
            mask |= ippCPUID_AVX2;
        }
    }
    if (has(registers.extendedLeaf.ecx, 8)) {
        mask |= ippCPUID_PREFETCHW;
    }
    return mask;
}

bool isGenuineIntel(const CpuidLeaf &leaf0) {
    return leaf0.ebx == 0x756E6547 && leaf0.edx == 0x49656E69 && leaf0.ecx == 0x6C65746E;
}

IppStatus selectLevel(Ipp64u mask, Ipp64u available, int &level, Ipp64u &completedMask) {
    IppStatus status = ippStsNoErr;
    const bool compares = (mask & ippCPUID_NOCHECK) == 0;
    mask &= ~Ipp64u{ippCPUID_NOCHECK};
    if (compares) {
        if ((available & ippAVX_ENABLEDBYOS) == 0) {
            const Ipp64u unusable = mask & (ippCPUID_AVX | ippCPUID_AVX2 | avx512Bits);
            if (unusable != 0) {
                mask &= ~unusable;
                status = ippStsFeatureNotSupported;
            }
        }
        if ((mask & knownBits & ~available) != 0) {
            status = ippStsFeatureNotSupported;
        }
        if ((mask & ~knownBits) != 0) {
            status = ippStsUnknownFeature;
        }
    }
    LevelRow chosen{0, 1, CpuLevel::plain};
    bool found = false;
    for (const LevelRow &row : levelRows) {
        if ((mask & row.condition) == row.condition) {
            chosen = row;
            found = true;
            break;
        }
    }
    level = static_cast<int>(chosen.level);
    completedMask = mask | chosen.needed;
    if (!found) {
        return ippStsNotSupportedCpu;
    }
    if (status == ippStsNoErr && (mask & chosen.needed) != chosen.needed) {
        status = ippStsFeaturesCombination;
    }
    return status;
}

} // namespace kernels
