#include <cstdlib>
#include <iostream>
#include <string>

#include <gtest/gtest.h>

#include "kernels/CpuLevel.h"
#include "kernels/kernels.h"

namespace {

/// One real use of the level's code: for a look from outside at what a CPU without the level does with it. Each level
/// makes this kernel of instructions that the one below does not have.
int runAtAnyLevel(int level) {
    const kernels::ForcedCpuLevel forced(level);
    Ipp32fc values[64] = {{1, 0}, {2, 3}};
    ippsConjCcs_32fc_I(values, 64);
    std::cout << "level " << kernels::runningCpuLevel() << " ran" << std::endl;
    return values[63].re == 2 && values[63].im == -3 ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

int main(int argc, char **argv) {
    const std::string option = "--run-at-level=";
    if (argc == 2 && std::string(argv[1]).rfind(option, 0) == 0) {
        return runAtAnyLevel(std::atoi(argv[1] + option.size()));
    }
    testing::InitGoogleTest(&argc, argv);
    if (!testing::GTEST_FLAG(list_tests)) {
        for (int level = 0; level < kernels::cpuLevels; ++level) {
            const char *const verdict = level <= kernels::highestCpuLevel() ? "tested" : "not on this CPU";
            std::cout << "level " << kernels::cpuLevelName(level) << ": " << verdict << "\n";
        }
    }
    return RUN_ALL_TESTS();
}
