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
    std::vector<std::string> names;
    for (const auto &[key, type] : process::soundLevelValueTypes()) {
        EXPECT_EQ(key, type.getName());
        names.push_back(key);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"dBA SPL fast", "dBA SPL slow", "dBC SPL fast", "dBC SPL slow", "dBFS",
                                               "dBZ SPL fast", "dBZ SPL slow"}));
}

TEST(SoundLevelValueType, namesNothingUntilItIsToldWhat) {
    const SoundLevelValueType type;
    EXPECT_EQ(type.getName(), "N/A");
    EXPECT_EQ(type.getDisplayName(), "N/A");
    EXPECT_EQ(type.getIndex(), -1);
}

TEST(SoundLevelValueConfig, printsTheValuesOfItsResultsBehindTheCommonLines) {
    EXPECT_EQ(process::SoundLevelValueConfig("conf", 480, 250).toString(),
              "\tProcessor type: SoundLevelValueProcessor\n\tRefresh rate: 250\n\tSample amount: 480\n"
              "\tClock type: Internal clock\n\tThe following sound level value types are being generated:"
              "\n\t\t0: dBA SPL f\n\t\t1: dBA SPL s\n\t\t2: dBC SPL f\n\t\t3: dBC SPL s\n\t\t6: dBFS"
              "\n\t\t4: dBZ SPL f\n\t\t5: dBZ SPL s");
}

} // namespace
