#include "kernels/Dispatch.h"

#include "kernels/CpuFeatures.h"
#include "kernels/CpuLevel.h"
#include "kernels/KernelList.h"
#include "kernels/Status.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

int cpuLevelIndex = -1;

namespace kernels {

// The implementations of the levels that are built; they live in loops/.
#define SONVEX_DECLARE(result, name, parameters, arguments) result name parameters;
#define SONVEX_DECLARE_LEVEL(argument, name, needed, vectorBytes, flags)                                               \
    namespace name {                                                                                                   \
    SONVEX_LEVEL_KERNELS(SONVEX_DECLARE)                                                                               \
    }
SONVEX_FIRST_CPU_LEVEL(SONVEX_DECLARE_LEVEL, )
#if defined(__x86_64__)
SONVEX_FURTHER_CPU_LEVELS(SONVEX_DECLARE_LEVEL, )
constexpr int highestBuiltLevel = cpuLevels - 1;
#else
#define SONVEX_STAND_IN(argument, name, needed, vectorBytes, flags) namespace name = plain;
SONVEX_FURTHER_CPU_LEVELS(SONVEX_STAND_IN, )
#undef SONVEX_STAND_IN
constexpr int highestBuiltLevel = 0;
#endif
#undef SONVEX_DECLARE_LEVEL
#undef SONVEX_DECLARE

namespace common {
namespace {

constexpr int alignment = 64;
constexpr int slack = alignment + 4; // with malloc's own alignment it leaves at least 8 bytes in front for a pointer
static_assert(alignof(std::max_align_t) >= 16, "the raw pointer is kept in front of the aligned address");

void *allocate(int length) {
    if (length <= 0 || length > std::numeric_limits<int>::max() - slack) {
        return nullptr;
    }
    auto *const raw = static_cast<char *>(std::malloc(static_cast<std::size_t>(length) + slack));
    if (raw == nullptr) {
        return nullptr;
    }
    const auto address = reinterpret_cast<std::uintptr_t>(raw);
    const std::uintptr_t offset = (address + slack - 1) / alignment * alignment - address;
    char *const aligned = raw + offset;
    std::memcpy(aligned - sizeof raw, &raw, sizeof raw);
    return aligned;
}

template <class Element>
Element *allocateElements(int length) {
    constexpr auto largest = std::numeric_limits<int>::max() / static_cast<int>(sizeof(Element));
    if (length <= 0 || length > largest) {
        return nullptr;
    }
    return static_cast<Element *>(allocate(length * static_cast<int>(sizeof(Element))));
}

void release(void *pointer) {
    if (pointer != nullptr) {
        char *raw = nullptr;
        std::memcpy(&raw, static_cast<char *>(pointer) - sizeof raw, sizeof raw);
        std::free(raw);
    }
}

Ipp8u *ippsMalloc_8u(int length) {
    return allocateElements<Ipp8u>(length);
}

Ipp32f *ippsMalloc_32f(int length) {
    return allocateElements<Ipp32f>(length);
}

Ipp32fc *ippsMalloc_32fc(int length) {
    return allocateElements<Ipp32fc>(length);
}

void ippsFree(void *pointer) {
    release(pointer);
}

} // namespace
} // namespace common

namespace {

// For each kernel the entry that the first call takes, then the implementation of each level.
#define SONVEX_LAZY_ENTRY(result, name, parameters, arguments) result lazy_##name parameters;
SONVEX_LEVEL_KERNELS(SONVEX_LAZY_ENTRY)
SONVEX_COMMON_KERNELS(SONVEX_LAZY_ENTRY)
#undef SONVEX_LAZY_ENTRY

/// Rows of entries, one for the first call and one for each level, one row behind the other.
struct DispatchTable {
#define SONVEX_ROW(result, name, parameters, arguments) result(*name[1 + cpuLevels]) parameters;
    SONVEX_LEVEL_KERNELS(SONVEX_ROW)
    SONVEX_COMMON_KERNELS(SONVEX_ROW)
#undef SONVEX_ROW
};

constexpr DispatchTable table = {
#define SONVEX_OWN_CODE(kernel, name, needed, vectorBytes, flags) name::kernel,
#define SONVEX_COMMON_CODE(kernel, name, needed, vectorBytes, flags) common::kernel,
#define SONVEX_ROW(result, name, parameters, arguments) {lazy_##name, SONVEX_CPU_LEVELS(SONVEX_OWN_CODE, name)},
    SONVEX_LEVEL_KERNELS(SONVEX_ROW)
#undef SONVEX_ROW
#define SONVEX_ROW(result, name, parameters, arguments) {lazy_##name, SONVEX_CPU_LEVELS(SONVEX_COMMON_CODE, name)},
        SONVEX_COMMON_KERNELS(SONVEX_ROW)
#undef SONVEX_ROW
#undef SONVEX_COMMON_CODE
#undef SONVEX_OWN_CODE
};

/// The entry of a row for the level that holds now. Every value that is ever stored is right, so no order is needed.
template <class Function>
Function *entryOf(Function *const (&row)[1 + cpuLevels]) {
    const std::ptrdiff_t level = __atomic_load_n(&cpuLevelIndex, __ATOMIC_RELAXED);
    return (row + 1)[level];
}

#define SONVEX_LAZY_ENTRY(result, name, parameters, arguments)                                                         \
    result lazy_##name parameters {                                                                                    \
        ippInit();                                                                                                     \
        return entryOf(table.name) arguments;                                                                          \
    }
SONVEX_LEVEL_KERNELS(SONVEX_LAZY_ENTRY)
SONVEX_COMMON_KERNELS(SONVEX_LAZY_ENTRY)
#undef SONVEX_LAZY_ENTRY

void storeLevel(int level) {
    __atomic_store_n(&cpuLevelIndex, std::min(level, highestBuiltLevel), __ATOMIC_RELAXED);
}

Ipp64u detectedFeatures = 0; // 0 before the first detection
Ipp64u selectedFeatures = 0; // the mask of the last decision, with all that its level needs

constexpr IppLibraryVersion libraryVersion = {
    2021, 6, 0, static_cast<int>(0xBFFE3C5BU), {'c', 'o', 'r', 'e'}, "ippCore", "2021.6 (r0xbffe3c5b)", "Mar  8 2022"};

} // namespace

const char *cpuLevelName(int level) {
#define SONVEX_NAME(argument, name, needed, vectorBytes, flags) #name,
    static constexpr const char *names[] = {SONVEX_CPU_LEVELS(SONVEX_NAME, )};
#undef SONVEX_NAME
    return names[level];
}

int highestCpuLevel() {
    Ipp64u mask = 0;
    int level = 0;
    if (ippGetCpuFeatures(&mask, nullptr) == ippStsNoErr) {
        selectCpuLevel(mask, &level);
    }
    return std::min(level, highestBuiltLevel);
}

unsigned long long selectedCpuFeatures() {
    return __atomic_load_n(&selectedFeatures, __ATOMIC_RELAXED);
}

int runningCpuLevel() {
    return sonvexKernelLevel();
}

ForcedCpuLevel::ForcedCpuLevel(int level) : previous(__atomic_load_n(&cpuLevelIndex, __ATOMIC_RELAXED)) {
    storeLevel(level);
}

ForcedCpuLevel::~ForcedCpuLevel() {
    __atomic_store_n(&cpuLevelIndex, previous, __ATOMIC_RELAXED);
}

} // namespace kernels

extern "C" {

#define SONVEX_ENTRY(result, name, parameters, arguments)                                                              \
    result name parameters {                                                                                           \
        return kernels::entryOf(kernels::table.name) arguments;                                                        \
    }
SONVEX_LEVEL_KERNELS(SONVEX_ENTRY)
SONVEX_COMMON_KERNELS(SONVEX_ENTRY)
#undef SONVEX_ENTRY

IppStatus ippInit(void) {
    Ipp64u mask = 0;
    if (ippGetCpuFeatures(&mask, nullptr) != ippStsNoErr) {
        __atomic_store_n(&kernels::selectedFeatures, Ipp64u{ippCPUID_MMX | ippCPUID_SSE}, __ATOMIC_RELAXED);
        kernels::storeLevel(0);
        return ippStsNotSupportedCpu;
    }
    int level = 0;
    const IppStatus status = selectCpuLevel(mask, &level);
    kernels::storeLevel(level);
    kernels::CpuidRegisters registers{};
    kernels::readCpuid(registers);
    return kernels::isGenuineIntel(registers.leaf0) ? status : ippStsNonIntelCpu;
}

IppStatus ippGetCpuFeatures(Ipp64u *pFeaturesMask, Ipp32u *pCpuidInfoRegs) {
    Ipp64u mask = __atomic_load_n(&kernels::detectedFeatures, __ATOMIC_RELAXED);
    kernels::CpuidRegisters registers{};
    const bool isKnown = mask != 0 && pCpuidInfoRegs == nullptr; // each CPUID costs a trap in a virtual machine
    if (!isKnown && !kernels::readCpuid(registers)) {
        return ippStsNotSupportedCpu;
    }
    if (pFeaturesMask == nullptr) {
        return ippStsNullPtrErr;
    }
    if (mask == 0) {
        mask = kernels::featuresOf(registers);
        __atomic_store_n(&kernels::detectedFeatures, mask, __ATOMIC_RELAXED);
    }
    *pFeaturesMask = mask;
    if (pCpuidInfoRegs != nullptr) {
        const kernels::CpuidLeaf &leaf = registers.leaf1;
        const Ipp32u values[4] = {leaf.eax, leaf.ebx, leaf.ecx, leaf.edx};
        std::copy(values, values + 4, pCpuidInfoRegs);
    }
    return ippStsNoErr;
}

IppStatus selectCpuLevel(Ipp64u mask, int *pIndex) {
    if (pIndex == nullptr) {
        return ippStsNullPtrErr;
    }
    Ipp64u available = 0;
    if ((mask & ippCPUID_NOCHECK) == 0) {
        ippGetCpuFeatures(&available, nullptr);
    }
    Ipp64u completed = 0;
    const IppStatus status = kernels::selectLevel(mask, available, *pIndex, completed);
    __atomic_store_n(&kernels::selectedFeatures, completed, __ATOMIC_RELAXED);
    return status;
}

const IppLibraryVersion *ippGetLibVersion(void) {
    return &kernels::libraryVersion;
}

void *ippMalloc(int length) {
    return kernels::common::allocate(length);
}

void ippFree(void *pointer) {
    kernels::common::release(pointer);
}

} // extern "C"
