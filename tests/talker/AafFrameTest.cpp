#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "talker/AafFrame.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr common::MacAddress source = {0x02, 0x13, 0x24, 0x35, 0x46, 0x57};
constexpr common::MacAddress destination = {0x91, 0xe0, 0xf0, 0x00, 0xfe, 0x00};

TEST(AafFrame, hasTheBytesOfAStandardFrame) {
    talker::AafFrame frame(source, destination, 2, 2);
    frame.setSequence(0xa5);
    frame.setTimestamp(0x89abcdef);
    frame.setSample(0, 0, 0x1234);
    frame.setSample(0, 1, -2);
    frame.setSample(1, 0, 32767);
    frame.setSample(1, 1, -32768);
    const Bytes expected = {0x91, 0xe0, 0xf0, 0x00, 0xfe, 0x00, 0x02, 0x13, 0x24, 0x35, 0x46, 0x57,
                            0x22, 0xf0, 0x02, 0x81, 0xa5, 0x00, 0x02, 0x13, 0x24, 0x35, 0x46, 0x57,
                            0x00, 0x00, 0x89, 0xab, 0xcd, 0xef, 0x04, 0x50, 0x02, 0x10, 0x00, 0x08,
                            0x00, 0x00, 0x12, 0x34, 0xff, 0xfe, 0x7f, 0xff, 0x80, 0x00};
    EXPECT_EQ(Bytes(frame.data(), frame.data() + frame.size()), expected);
}

TEST(AafFrame, refusesFormatsThatItsHeaderCannotDeclare) {
    talker::AafFrame frame(source, destination, 2, 6);
    EXPECT_THROW(frame.setFormat(0, 6), std::out_of_range);
    EXPECT_THROW(frame.setFormat(2, 0), std::out_of_range);
    EXPECT_THROW(frame.setFormat(1024, 1), std::out_of_range);
    EXPECT_THROW(frame.setFormat(1, 32768), std::out_of_range);
    EXPECT_THROW(frame.setFormat(1023, 33), std::out_of_range);
    EXPECT_EQ(frame.size(), 62U) << "the format must stay as it was";
}

} // namespace
