#pragma once

#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "kernels/CpuLevel.h"

namespace support {

/// All levels that this CPU can run.
inline std::vector<int> runnableLevels() {
    std::vector<int> levels;
    for (int level = 0; level <= kernels::highestCpuLevel(); ++level) {
        levels.push_back(level);
    }
    return levels;
}

inline std::string levelName(const testing::TestParamInfo<int> &info) {
    return kernels::cpuLevelName(info.param);
}

/// A test that runs once at each level that this CPU has.
class AtLevel : public testing::TestWithParam<int> {
    kernels::ForcedCpuLevel forced{GetParam()};
};

} // namespace support

#define SONVEX_AT_ALL_LEVELS(fixture)                                                                                  \
    INSTANTIATE_TEST_SUITE_P(CpuLevels, fixture, testing::ValuesIn(support::runnableLevels()), support::levelName)
