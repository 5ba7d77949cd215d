#include <stdexcept>

#include <gtest/gtest.h>

#include "talker/AafFrame.h"

namespace {

TEST(AafFrame, refusesFormatsThatItsHeaderCannotDeclare) {
    talker::AafFrame frame({}, {}, 2, 6);
    EXPECT_THROW(frame.setFormat({0, 6}), std::out_of_range);
    EXPECT_THROW(frame.setFormat({2, 0}), std::out_of_range);
    EXPECT_THROW(frame.setFormat({1024, 1}), std::out_of_range);
    EXPECT_THROW(frame.setFormat({1, 32768}), std::out_of_range);
    EXPECT_THROW(frame.setFormat({1023, 33}), std::out_of_range);
    EXPECT_THROW(frame.setFormat({512, 32, common::aafFormats[2]}), std::out_of_range);
    EXPECT_THROW(frame.setFormat({2, 6, common::aafFormats[0], 11025}), std::out_of_range);
    EXPECT_EQ(frame.size(), 62U) << "the format must stay as it was";
}

} // namespace
