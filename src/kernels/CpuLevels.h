#pragma once

/**
 * @file
 * The CPU levels in one list, the lowest first. The build, the dispatch, the tests and the scripts read it, some of
 * them as text: each level keeps to a line.
 *
 * LEVEL gets @p argument, the level's name and namespace, the features that its code needs (bits of Dispatch.h), the
 * bytes of its vectors, and the compiler's flags. The first level runs on every processor; the others are built for
 * x86-64 alone.
 */

// clang-format off
#define SONVEX_FIRST_CPU_LEVEL(LEVEL, argument) \
    LEVEL(argument, plain, 0x7, 16, "")

#define SONVEX_FURTHER_CPU_LEVELS(LEVEL, argument) \
    LEVEL(argument, ssse3, 0x1F, 16, "-mssse3") \
    LEVEL(argument, sse42, 0xDF, 16, "-msse4.2") \
    LEVEL(argument, avx, 0x1DF, 32, "-mavx") \
    LEVEL(argument, avx2, 0x81DF, 32, "-mavx2 -mfma -mbmi -mbmi2")
// clang-format on

#define SONVEX_CPU_LEVELS(LEVEL, argument)                                                                             \
    SONVEX_FIRST_CPU_LEVEL(LEVEL, argument) SONVEX_FURTHER_CPU_LEVELS(LEVEL, argument)

namespace kernels {

/// The index of each level by its name.
enum class CpuLevel : int {
#define SONVEX_INDEX(argument, name, needed, vectorBytes, flags) name,
    SONVEX_CPU_LEVELS(SONVEX_INDEX, )
#undef SONVEX_INDEX
};

#define SONVEX_COUNT(argument, name, needed, vectorBytes, flags) +1
constexpr int cpuLevels = SONVEX_CPU_LEVELS(SONVEX_COUNT, );
#undef SONVEX_COUNT

} // namespace kernels
