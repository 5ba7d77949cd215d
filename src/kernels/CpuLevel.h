#pragma once

/**
 * @file
 * The CPU levels, which of them runs, and, for tests and benchmarks, another one than was chosen for this CPU.
 */

#include "kernels/CpuLevels.h"

extern "C" {
/// The level that the code was compiled for which runs now; dispatched like a kernel.
int sonvexKernelLevel();
}

namespace kernels {

/// As in the list of levels.
const char *cpuLevelName(int level);

/// The highest level that this CPU can run, counted from 0. Levels that are not built run as the highest one below
/// them.
int highestCpuLevel();

/// The level that the code was compiled for which a kernel call runs now: asked of that code itself.
int runningCpuLevel();

/// The mask of the last level decision, with all the features that its level needs; 0 before the first one.
unsigned long long selectedCpuFeatures();

/**
 * Makes all kernels of the process run at a level for its life. Not while another thread is inside a kernel, and not
 * with tables that were made at another level.
 */
class ForcedCpuLevel {
public:
    /// @param level counted from 0, or -1 to let the next call choose; it is not compared with what this CPU can run
    explicit ForcedCpuLevel(int level);
    ~ForcedCpuLevel();

    ForcedCpuLevel(const ForcedCpuLevel &) = delete;
    ForcedCpuLevel &operator=(const ForcedCpuLevel &) = delete;

private:
    int previous;
};

} // namespace kernels
