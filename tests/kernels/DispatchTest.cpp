#include <atomic>
#include <climits>
#include <cstring>
#include <set>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "CpuLevels.h"
#include "kernels/CpuFeatures.h"
#include "kernels/kernels.h"

namespace {

using kernels::CpuidLeaf;
using kernels::CpuidRegisters;

template <class... Numbers>
constexpr std::uint32_t bits(Numbers... numbers) {
    return (std::uint32_t{0} | ... | (std::uint32_t{1} << numbers));
}

class CpuLevels : public support::AtLevel {};
SONVEX_AT_ALL_LEVELS(CpuLevels);

TEST_P(CpuLevels, runTheirOwnCode) {
    EXPECT_EQ(kernels::runningCpuLevel(), GetParam());
}

TEST(Dispatch, choosesTheLevelAtTheFirstCallWhicheverItIs) {
    using Call = bool (*)();
    static int size = 0;
    static float values[3] = {2, 2, 2};
    const Call calls[] = {
        [] { return ippsSet_32f(2, values, 3) == 0 && values[2] == 2; },
        [] { return ippsMul_32f_I(nullptr, nullptr, 1) == ippStsNullPtrErr; },
        [] { return ippsSqr_64f(nullptr, nullptr, 1) == ippStsNullPtrErr; },
        [] { return ippsPowerSpectr_32fc(nullptr, nullptr, 1) == ippStsNullPtrErr; },
        [] { return ippsWinHann_32f_I(values, 3) == 0 && values[0] == 0 && values[1] == 2; },
        [] { return ippsConjCcs_32fc_I(nullptr, 1) == ippStsNullPtrErr; },
        [] { return ippsFFTGetSize_R_32f(31, 1, 0, &size, &size, &size) == ippStsFftOrderErr; },
        [] { return ippsFFTInit_R_32f(nullptr, 1, 1, 0, nullptr, nullptr) == ippStsNullPtrErr; },
        [] { return ippsFFTFwd_RToCCS_32f(nullptr, nullptr, nullptr, nullptr) == ippStsNullPtrErr; },
        [] { return ippsIIR_64f(nullptr, nullptr, 1, nullptr) == ippStsNullPtrErr; },
        [] { return ippsIIRGetStateSize_BiQuad_64f(3, &size) == 0 && size == 10032; },
        [] { return ippsIIRInit_BiQuad_64f(nullptr, nullptr, 1, nullptr, nullptr) == ippStsNullPtrErr; },
        [] { return ippsMalloc_8u(0) == nullptr; },
        [] { return ippsMalloc_32f(0) == nullptr; },
        [] { return ippsMalloc_32fc(0) == nullptr; },
        [] { return ippsFree(nullptr), true; },
        [] { return kernels::runningCpuLevel() == kernels::highestCpuLevel(); },
    };
    for (const Call &call : calls) {
        cpuLevelIndex = -1;
        EXPECT_TRUE(call()) << "call " << &call - calls;
        EXPECT_EQ(cpuLevelIndex, kernels::highestCpuLevel()) << "call " << &call - calls;
    }
}

TEST(Dispatch, choosesTheSameLevelInTwoThreadsAtOnce) {
    for (int round = 0; round < 50; ++round) {
        cpuLevelIndex = -1;
        std::atomic<int> waiting{2};
        const auto work = [&waiting](int &level) {
            --waiting;
            while (waiting > 0) {
                std::this_thread::yield();
            }
            level = kernels::runningCpuLevel();
        };
        int levels[2] = {-1, -1};
        std::thread other(work, std::ref(levels[0]));
        work(levels[1]);
        other.join();
        ASSERT_TRUE(levels[0] == kernels::highestCpuLevel() && levels[1] == levels[0] && cpuLevelIndex == levels[0]);
    }
}

TEST(Dispatch, runsThisCpuAtWhatTheCompilerKnowsOfIt) {
    int expected = 0;
    int initStatus = ippStsNotSupportedCpu;
    int statusWithoutMask = ippStsNotSupportedCpu;
#if defined(__x86_64__)
    const bool levels[] = {__builtin_cpu_supports("ssse3") != 0, __builtin_cpu_supports("sse4.2") != 0,
                           __builtin_cpu_supports("avx") != 0,
                           __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") &&
                               __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2")};
    while (expected < 4 && levels[expected]) {
        ++expected;
    }
    initStatus = __builtin_cpu_is("intel") ? ippStsNoErr : ippStsNonIntelCpu;
    statusWithoutMask = ippStsNullPtrErr;
#endif
    EXPECT_EQ(kernels::highestCpuLevel(), expected);
    EXPECT_EQ(ippInit(), initStatus);
    EXPECT_EQ(cpuLevelIndex, expected);
    CpuidRegisters cpu{};
    Ipp64u mask = 0;
    Ipp32u leaf1[4] = {};
    EXPECT_EQ(ippGetCpuFeatures(nullptr, leaf1), statusWithoutMask);
    EXPECT_EQ(ippGetCpuFeatures(&mask, leaf1), kernels::readCpuid(cpu) ? ippStsNoErr : ippStsNotSupportedCpu);
    EXPECT_EQ(mask, kernels::featuresOf(cpu));
    EXPECT_TRUE(leaf1[0] == cpu.leaf1.eax && leaf1[2] == cpu.leaf1.ecx && leaf1[3] == cpu.leaf1.edx);
    EXPECT_EQ(ippGetCpuFeatures(&mask, nullptr), kernels::readCpuid(cpu) ? ippStsNoErr : ippStsNotSupportedCpu);
    EXPECT_EQ(selectCpuLevel(ippCPUID_NOCHECK | 0xDF, nullptr), ippStsNullPtrErr);
    EXPECT_EQ(selectCpuLevel(ippCPUID_NOCHECK | ippCPUID_SSE42, &expected), ippStsFeaturesCombination);
    EXPECT_EQ(expected, 2);
    EXPECT_EQ(kernels::selectedCpuFeatures(), 0xDFU) << "the mask with all that the level needs";
}

TEST(CpuFeatures, comeFromTheirBits) {
    struct Source {
        CpuidLeaf CpuidRegisters::*leaf;
        std::uint32_t CpuidLeaf::*reg;
        std::vector<int> places; ///< bit of the register, bit of the mask, ...
    };
    const std::vector<int> ofEcx = {0, 3, 9, 4, 22, 5, 19, 6, 20, 7, 28, 8, 25, 10, 1, 11, 30, 13, 29, 14};
    for (const auto &[leaf, reg, places] : {Source{&CpuidRegisters::leaf1, &CpuidLeaf::edx, {23, 0, 25, 1, 26, 2}},
                                            {&CpuidRegisters::leaf1, &CpuidLeaf::ecx, ofEcx},
                                            {&CpuidRegisters::leaf7, &CpuidLeaf::ebx, {19, 16, 18, 17, 29, 19}},
                                            {&CpuidRegisters::extendedLeaf, &CpuidLeaf::ecx, {8, 18}}}) {
        for (std::size_t n = 0; n < places.size(); n += 2) {
            CpuidRegisters cpu{};
            cpu.leaf0.eax = 7;
            cpu.*leaf.*reg = bits(places[n]);
            EXPECT_EQ(kernels::featuresOf(cpu), Ipp64u{1} << places[n + 1]) << "feature " << places[n + 1];
        }
    }
}

using Choice = std::tuple<int, int, Ipp64u>; ///< level, status, completed mask

Choice choose(Ipp64u mask, Ipp64u available) {
    int level = -1;
    Ipp64u completed = 0;
    const int status = kernels::selectLevel(mask, available, level, completed);
    return {level, status, completed};
}

TEST(CpuFeatures, decideTheLevel) {
    // Level and status from ECX of leaf 1, EBX of leaf 7, XCR0, the last leaf reported and EDX of leaf 1.
    const auto run = [](std::uint32_t ecx, std::uint32_t ebx, std::uint64_t xcr0 = 7, std::uint32_t lastLeaf = 7,
                        std::uint32_t edx = bits(23, 25, 26)) {
        const CpuidRegisters cpu = {{lastLeaf, 0, 0, 0}, {0, 0, ecx, edx}, {0, ebx, 0, 0}, {}, xcr0};
        const Choice choice = choose(kernels::featuresOf(cpu), kernels::featuresOf(cpu));
        return std::pair(std::get<0>(choice), std::get<1>(choice));
    };
    constexpr std::uint32_t ecx = bits(0, 9, 12, 19, 20, 22, 27, 28);
    constexpr std::uint32_t ebx = bits(3, 5, 8);
    EXPECT_EQ(run(ecx, ebx), std::pair(4, 0));
    EXPECT_EQ(run(ecx, ebx | bits(16, 28, 30, 17, 31)), std::pair(4, 0));
    EXPECT_EQ(run(ecx, bits(16, 28, 30, 17, 31)), std::pair(4, 51)) << "AVX-512 without AVX2";
    EXPECT_EQ(run(ecx, bits(16, 28, 27, 26)), std::pair(4, 51)) << "many-core AVX-512 without AVX2";
    EXPECT_EQ(run(ecx, bits(16, 28, 30, 17, 27)), std::pair(3, 0)) << "parts of AVX-512";
    EXPECT_EQ(run(ecx ^ bits(12), ebx), std::pair(3, 0)) << "no FMA";
    EXPECT_EQ(run(ecx, ebx ^ bits(3)), std::pair(3, 0)) << "no BMI1";
    EXPECT_EQ(run(ecx, ebx ^ bits(5)), std::pair(3, 0)) << "no AVX2";
    EXPECT_EQ(run(ecx, ebx ^ bits(8)), std::pair(3, 0)) << "no BMI2";
    EXPECT_EQ(run(ecx, ebx, 7, 6), std::pair(3, 0)) << "leaf 7 not reported";
    EXPECT_EQ(run(ecx, ebx, 3), std::pair(2, 49)) << "upper halves not saved";
    EXPECT_EQ(run(ecx, ebx, 5), std::pair(2, 49)) << "lower halves not saved";
    EXPECT_EQ(run(ecx ^ bits(27), ebx), std::pair(2, 49)) << "no OSXSAVE";
    EXPECT_EQ(run(ecx ^ bits(28), ebx), std::pair(2, 49)) << "no AVX";
    EXPECT_EQ(run(bits(0, 9, 19, 20), 0), std::pair(2, 0));
    EXPECT_EQ(run(bits(0, 9, 19), 0), std::pair(1, 0));
    EXPECT_EQ(run(bits(0, 9, 22), 0), std::pair(1, 0));
    EXPECT_EQ(run(bits(0, 9), 0), std::pair(1, 0));
    EXPECT_EQ(run(bits(0), 0), std::pair(0, 0));
    EXPECT_EQ(run(0, 0), std::pair(0, 0));
    EXPECT_EQ(run(0, 0, 7, 7, bits(23, 25)), std::pair(0, 0));
    EXPECT_EQ(run(0, 0, 7, 7, bits(23)), std::pair(0, 36));
}

TEST(CpuFeatures, areComparedAndCompleted) {
    constexpr Ipp64u noOs = 0x81FF;
    constexpr Ipp64u all = noOs | ippAVX_ENABLEDBYOS;
    constexpr Ipp64u unknown = 1ULL << 40;
    constexpr Ipp64u sha = ippCPUID_SHA;
    EXPECT_EQ(choose(all, all), Choice(4, 0, all));
    EXPECT_EQ(choose(noOs, noOs), Choice(2, 49, 0xFF));
    EXPECT_EQ(choose(0x1C0, noOs), Choice(2, 49, 0xDF)) << "a status that stands";
    EXPECT_EQ(choose(0xFF | sha, 0xFF), Choice(2, 49, 0xFF | sha));
    EXPECT_EQ(choose(0xFF | unknown, all), Choice(2, 50, 0xFF | unknown));
    EXPECT_EQ(choose(0, all), Choice(0, 36, 1));
    EXPECT_EQ(choose(ippCPUID_NOCHECK | 0x81DF, 0), Choice(4, 0, 0x81DF));
    const Ipp64u needed[] = {3, 7, 0xF, 0x1F, 0x3F, 0x5F, 0xDF, 0x1DF, 0x81DF};
    const int levels[] = {0, 0, 0, 1, 1, 1, 2, 3, 4};
    for (int n = 0; n < 9; ++n) {
        const Ipp64u feature = Ipp64u{1} << (n < 8 ? n + 1 : 15);
        EXPECT_EQ(choose(ippCPUID_NOCHECK | feature, 0), Choice(levels[n], 51, needed[n])) << feature;
    }
    const CpuidLeaf intel = {0, 0x756E6547, 0x6C65746E, 0x49656E69};
    EXPECT_TRUE(kernels::isGenuineIntel(intel));
    for (const auto reg : {&CpuidLeaf::ebx, &CpuidLeaf::ecx, &CpuidLeaf::edx}) {
        CpuidLeaf other = intel;
        other.*reg ^= 0x20;
        EXPECT_FALSE(kernels::isGenuineIntel(other));
    }
}

TEST(Dispatch, tellsItsVersion) {
    const IppLibraryVersion &version = *ippGetLibVersion();
    EXPECT_TRUE(version.major == 2021 && version.minor == 6 && version.majorBuild == 0);
    EXPECT_EQ(static_cast<unsigned>(version.build), 0xBFFE3C5BU);
    EXPECT_EQ(std::string(version.targetCpu, 4) + version.Name, "coreippCore");
    EXPECT_EQ(version.Version + std::string(version.BuildDate), "2021.6 (r0xbffe3c5b)Mar  8 2022");
}

TEST(Allocators, refuseLengthsThatCannotBe) {
    ippFree(nullptr);
    for (const int length : {0, -1, INT_MIN, INT_MAX, INT_MAX - 67}) {
        EXPECT_TRUE(ippMalloc(length) == nullptr && ippsMalloc_8u(length) == nullptr) << length;
    }
    for (const int length : {0, -1, INT_MIN, INT_MAX, 1 << 29, (1 << 29) + 16, (1 << 30) + 16}) {
        EXPECT_TRUE(ippsMalloc_32f(length) == nullptr && ippsMalloc_32fc(length) == nullptr) << length;
    }
    EXPECT_EQ(ippsMalloc_32fc(268435456), nullptr);
}

TEST(Allocators, giveAllBytesAtAMultipleOf64) {
    for (int length = 1; length < 3000; length += 1 + length / 40) {
        std::pair<void *, int> all[] = {{ippMalloc(length), 1},
                                        {ippsMalloc_8u(length), 1},
                                        {ippsMalloc_32f(length), 4},
                                        {ippsMalloc_32fc(length), 8}};
        for (const auto &[pointer, elementSize] : all) {
            const auto address = reinterpret_cast<std::uintptr_t>(pointer);
            ASSERT_TRUE(address != 0 && address % 64 == 0);
            std::memset(pointer, 0x5A, static_cast<std::size_t>(elementSize * length));
            std::uintptr_t raw = 0;
            std::memcpy(&raw, static_cast<const char *>(pointer) - sizeof raw, sizeof raw);
            EXPECT_TRUE(raw < address && address - raw <= 67) << address - raw;
            elementSize == 1 ? ippFree(pointer) : ippsFree(pointer);
        }
    }
}

TEST(StatusTexts, nameTheirCodesAndAreAllReachable) {
    const std::string unknown = "ippStsUnknownStatusCodeErr: Unknown status code";
    const std::pair<int, std::string> expected[] = {
        {0, "ippStsNoErr: No errors"},
        {-6, "ippStsSizeErr: Incorrect value for data size"},
        {-8, "ippStsNullPtrErr: Null pointer error"},
        {-10, "ippStsDivByZeroErr: An attempt to divide by zero"},
        {-13, "ippStsContextMatchErr: Context parameter does not match the operation"},
        {-17, "ippStsFftOrderErr: Invalid value for the FFT order parameter"},
        {-18, "ippStsFftFlagErr: Invalid value for the FFT flag parameter"},
        {-25, "ippStsIIROrderErr: Order of an IIR filter is not valid"},
        {-216, unknown},
        {20, "ippStsNonIntelCpu: The target CPU is not Genuine Intel"},
        {36, "ippStsNotSupportedCpu: The CPU is not supported"},
        {49, "ippStsFeatureNotSupported: Current CPU doesn't support at least 1 of the desired features"},
        {50, "ippStsUnknownFeature: At least one of the desired features is unknown"},
        {51, "ippStsFeaturesCombination: Wrong combination of features"},
        {-9702, "No shared libraries were found in the Waterfall procedure"},
        {-9701, "No DLLs were found in the Waterfall procedure"},
        {-9700, "Error at loading of %s library"},
        {53, "The function is inefficient due to the combination of input parameters"}};
    for (const auto &[code, text] : expected) {
        EXPECT_EQ(ippGetStatusString(code), text) << code;
    }
    for (const int code : {-3, 6, 54, -10000, INT_MIN, INT_MAX}) {
        EXPECT_EQ(ippGetStatusString(code), unknown) << code;
    }
    std::set<std::string> texts;
    int known = 0;
    int named = 0;
    for (int code = -10000; code <= 100; ++code) {
        const std::string text = ippGetStatusString(code);
        texts.insert(text);
        known += text != unknown ? 1 : 0;
        named += text != unknown && text.rfind("ippSts", 0) == 0 && text.find(": ") != std::string::npos ? 1 : 0;
    }
    EXPECT_TRUE(known == 138 && named == 134 && texts.size() == 139) << known << ", " << named << ", " << texts.size();
}

} // namespace
