#include <tuple>
#include <type_traits>

#include <gtest/gtest.h>

#include "process/configuration/SoundLevelValueConfig.h"
#include "process/configuration/SoundLevelValueTypes.h"

namespace {

using sonvex::iprocess::SoundLevelValueType;

static_assert(std::is_copy_constructible_v<SoundLevelValueType> && std::is_copy_assignable_v<SoundLevelValueType> &&
              std::is_nothrow_move_constructible_v<SoundLevelValueType> &&
              std::is_nothrow_move_assignable_v<SoundLevelValueType> && !std::is_polymorphic_v<SoundLevelValueType>);

TEST(SoundLevelValueTypes, areSevenInTheOrderOfTheirNames) {
    std::vector<std::tuple<std::string, std::string, std::string, int>> types;
    for (const auto &[key, type] : process::soundLevelValueTypes()) {
        types.emplace_back(key, type.getName(), type.getDisplayName(), type.getIndex());
    }
    const decltype(types) expected = {{"dBA SPL fast", "dBA SPL fast", "dBA SPL f", 0},
                                      {"dBA SPL slow", "dBA SPL slow", "dBA SPL s", 1},
                                      {"dBC SPL fast", "dBC SPL fast", "dBC SPL f", 2},
                                      {"dBC SPL slow", "dBC SPL slow", "dBC SPL s", 3},
                                      {"dBFS", "dBFS", "dBFS", 6},
                                      {"dBZ SPL fast", "dBZ SPL fast", "dBZ SPL f", 4},
                                      {"dBZ SPL slow", "dBZ SPL slow", "dBZ SPL s", 5}};
    EXPECT_EQ(types, expected);
}

TEST(SoundLevelValueType, namesNothingUntilItIsToldWhat) {
    SoundLevelValueType type;
    EXPECT_EQ(type.getName(), "N/A");
    EXPECT_EQ(type.getDisplayName(), "N/A");
    EXPECT_EQ(type.getIndex(), -1);
    type = process::soundLevelValueTypes().at("dBFS");
    EXPECT_EQ(type.getIndex(), 6);
}

TEST(SoundLevelValueConfig, printsTheValuesOfItsResultsBehindTheCommonLines) {
    EXPECT_EQ(process::SoundLevelValueConfig("conf", 480, 250).toString(),
              "\tProcessor type: SoundLevelValueProcessor\n\tRefresh rate: 250\n\tSample amount: 480\n"
              "\tClock type: Internal clock\n\tThe following sound level value types are being generated:"
              "\n\t\t0: dBA SPL f\n\t\t1: dBA SPL s\n\t\t2: dBC SPL f\n\t\t3: dBC SPL s\n\t\t6: dBFS"
              "\n\t\t4: dBZ SPL f\n\t\t5: dBZ SPL s");
}

} // namespace
