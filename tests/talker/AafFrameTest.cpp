#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "talker/AafFrame.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr talker::MacAddress source = {0x02, 0x13, 0x24, 0x35, 0x46, 0x57};
constexpr talker::MacAddress destination = {0x91, 0xe0, 0xf0, 0x00, 0xfe, 0x00};

Bytes bytesOf(const talker::AafFrame &frame) {
    return Bytes(frame.data(), frame.data() + frame.size());
}

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
    EXPECT_EQ(bytesOf(frame), expected);
}

TEST(AafFrame, declaresItsFormatAndReachesTheLastSample) {
    const struct {
        unsigned channels;
        unsigned samples;
        std::size_t size;
        Bytes declared; ///< offsets 30 to 37
    } formats[] = {{1, 1, 40, {0x04, 0x50, 0x01, 0x10, 0x00, 0x02, 0x00, 0x00}},
                   {2, 6, 62, {0x04, 0x50, 0x02, 0x10, 0x00, 0x18, 0x00, 0x00}},
                   {8, 6, 134, {0x04, 0x50, 0x08, 0x10, 0x00, 0x60, 0x00, 0x00}},
                   {255, 1, 548, {0x04, 0x50, 0xff, 0x10, 0x01, 0xfe, 0x00, 0x00}},
                   {256, 1, 550, {0x04, 0x51, 0x00, 0x10, 0x02, 0x00, 0x00, 0x00}},
                   {1023, 32, 65510, {0x04, 0x53, 0xff, 0x10, 0xff, 0xc0, 0x00, 0x00}},
                   {1, 32767, 65572, {0x04, 0x50, 0x01, 0x10, 0xff, 0xfe, 0x00, 0x00}}};
    talker::AafFrame frame(source, destination, 7, 7);
    for (const auto &format : formats) {
        SCOPED_TRACE(format.channels);
        frame.setFormat(format.channels, format.samples);
        frame.setSample(format.samples - 1, format.channels - 1, 0x5a5a);
        const Bytes bytes = bytesOf(frame);
        ASSERT_EQ(bytes.size(), format.size);
        EXPECT_EQ(Bytes(bytes.begin() + 30, bytes.begin() + 38), format.declared);
        EXPECT_EQ(Bytes(bytes.end() - 2, bytes.end()), Bytes({0x5a, 0x5a}));
    }
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
