#pragma once

#include "kernels/Types.h"

/**
 * @file
 * Which code runs on this CPU, and the memory of the kernels. Nothing here has to be called before a kernel: the first
 * call of any of them, from any thread, chooses the level for the rest of the process.
 */

#ifdef __cplusplus
extern "C" {
#endif

/// Bits of a feature mask.
enum {
    ippCPUID_MMX = 0x00001,
    ippCPUID_SSE = 0x00002,
    ippCPUID_SSE2 = 0x00004,
    ippCPUID_SSE3 = 0x00008,
    ippCPUID_SSSE3 = 0x00010,
    ippCPUID_MOVBE = 0x00020,
    ippCPUID_SSE41 = 0x00040,
    ippCPUID_SSE42 = 0x00080,
    ippCPUID_AVX = 0x00100,
    ippAVX_ENABLEDBYOS = 0x00200, ///< the operating system saves the registers of AVX
    ippCPUID_AES = 0x00400,
    ippCPUID_CLMUL = 0x00800,
    ippCPUID_RDRAND = 0x02000,
    ippCPUID_F16C = 0x04000,
    ippCPUID_AVX2 = 0x08000, ///< with FMA, BMI1 and BMI2
    ippCPUID_ADX = 0x10000,
    ippCPUID_RDSEED = 0x20000,
    ippCPUID_PREFETCHW = 0x40000,
    ippCPUID_SHA = 0x80000,
    ippCPUID_AVX512F = 0x100000,
    ippCPUID_AVX512CD = 0x200000,
    ippCPUID_AVX512ER = 0x400000,
    ippCPUID_AVX512PF = 0x800000,
    ippCPUID_AVX512BW = 0x1000000,
    ippCPUID_AVX512DQ = 0x2000000,
    ippCPUID_AVX512VL = 0x4000000
};

/// Top bit of a mask for selectCpuLevel: decide without asking this CPU.
#define ippCPUID_NOCHECK 0x8000000000000000ULL

/// Name and version of the kernels.
typedef struct {
    int major;
    int minor;
    int majorBuild;
    int build;
    char targetCpu[4]; ///< without a closing zero
    const char *Name;
    const char *Version;
    const char *BuildDate;
} IppLibraryVersion;

/// -1 before the first kernel call of the process, then the level, 0 to 4. See kernels/CpuLevel.h for other levels.
extern int cpuLevelIndex;

/**
 * Chooses the level from what the CPU reports. The kernels do so themselves.
 *
 * @return ippStsNotSupportedCpu on a CPU without CPUID, which runs at level 0; ippStsNonIntelCpu on CPUs of other
 *         vendors, whose features count just the same; else that of selectCpuLevel
 */
IppStatus ippInit(void);

/**
 * Detects the features of this CPU.
 *
 * @param pFeaturesMask receives the mask
 * @param pCpuidInfoRegs receives EAX, EBX, ECX and EDX of CPUID leaf 1; may be null
 * @return ippStsNotSupportedCpu on a CPU without CPUID, else ippStsNullPtrErr for a null mask, else ippStsNoErr
 */
IppStatus ippGetCpuFeatures(Ipp64u *pFeaturesMask, Ipp32u *pCpuidInfoRegs);

/**
 * Finds the highest level whose features a mask holds.
 *
 * @param mask features, with the top bit set if they are not to be compared with those of this CPU
 * @param pIndex receives the level, whatever the status
 * @return ippStsNullPtrErr for a null pIndex, ippStsFeatureNotSupported or ippStsUnknownFeature for a mask that asks
 * for more than the CPU has or than is known, ippStsNotSupportedCpu for one without any feature that counts,
 * ippStsFeaturesCombination for one that lacks features which its level needs, else ippStsNoErr
 */
IppStatus selectCpuLevel(Ipp64u mask, int *pIndex);

/// Never null; the same record for the life of the process.
const IppLibraryVersion *ippGetLibVersion(void);

/**
 * Memory at a multiple of 64, to be given back with ippFree. From any thread.
 *
 * @param length bytes
 * @return null for a length of 0 or less, for one that cannot be had, and when there is no memory
 */
void *ippMalloc(int length);

/// Gives memory of the allocators here back; null is ignored.
void ippFree(void *pointer);

/// ippMalloc for length elements of 1, 4 or 8 bytes; null for more than 2^31 - 1 bytes too.
Ipp8u *ippsMalloc_8u(int length);
Ipp32f *ippsMalloc_32f(int length);
Ipp32fc *ippsMalloc_32fc(int length);

/// ippFree under its name for signal code.
void ippsFree(void *pointer);

#ifdef __cplusplus
}
#endif
