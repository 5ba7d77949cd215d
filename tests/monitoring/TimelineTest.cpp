#include "monitoring/Timeline.h"

#include <gtest/gtest.h>

#include <sonvex/IStreamFacts.h>

namespace {

/// Facts that the test makes.
class Facts : public sonvex::IStreamFacts {
public:
    std::uint64_t getFramesTaken() const override { return taken; }
    std::uint64_t getGaps() const override { return gaps; }
    std::uint64_t getFramesLost() const override { return 0; }
    std::uint64_t getFramesRepeated() const override { return 0; }
    std::uint64_t getFramesRefused(sonvex::FrameRefusal /*cause*/) const override { return 0; }
    std::uint64_t getFramesRefused() const override { return refused; }
    int getFormat() const override { return 4; }
    int getChannelAmount() const override { return 2; }
    int getDataLength() const override { return dataLength; }
    std::int64_t getCaptureTime() const override { return captureTime; }
    std::int64_t getSteadyTime() const override { return 0; }
    int getSampleRate() const override { return 48000; }
    int getBitDepth() const override { return 16; }
    int getVlanId() const override { return -1; }
    int getVlanPriority() const override { return -1; }
    std::string getStreamId() const override { return {}; }
    std::uint64_t getNonFiniteSamples() const override { return 0; }
    sonvex::StreamClock getClock() const override { return {}; }

    int dataLength = 24;
    std::uint64_t taken = 0;
    std::uint64_t gaps = 0;
    std::uint64_t refused = 0;
    std::int64_t captureTime = 0;
};

TEST(Timeline, knowsTheTimeOfSamplesAndWhereSomeAreMissing) {
    Facts facts;
    monitoring::Timeline timeline(facts, {"020000000001", 2, 6}, 48000);
    facts.captureTime = 1'600'000'000'000'000; // of a frame that was refused
    timeline.update();
    EXPECT_FALSE(timeline.timeOf(0));
    facts.taken = 8000;
    facts.captureTime = 1'700'000'000'000'000;
    timeline.update();
    EXPECT_EQ(timeline.end(), 48000U);
    const auto microseconds = [&](std::uint64_t sample) {
        return std::chrono::duration_cast<std::chrono::microseconds>(timeline.timeOf(sample).value().time_since_epoch())
            .count();
    };
    EXPECT_EQ(microseconds(48000), facts.captureTime);
    EXPECT_EQ(microseconds(43200), facts.captureTime - 100'000);
    facts.captureTime += 1'000'000;
    timeline.update();
    EXPECT_EQ(microseconds(48000), facts.captureTime - 1'000'000) << "refused frames are captured, too";
    EXPECT_FALSE(timeline.hasGap(0, 48000));
    for (std::uint64_t *loss : {&facts.gaps, &facts.refused}) {
        const std::uint64_t before = timeline.end();
        facts.taken += 100;
        ++*loss;
        timeline.update();
        const std::uint64_t after = timeline.end();
        EXPECT_TRUE(timeline.hasGap(after - 480, after));
        EXPECT_FALSE(timeline.hasGap(before - 480, before));
        facts.taken += 100;
        timeline.update();
        EXPECT_TRUE(timeline.hasGap(after, after + 480)) << "right behind it";
        EXPECT_FALSE(timeline.hasGap(after + 6, after + 480));
    }
    facts.taken += 100'000;
    timeline.update();
    EXPECT_FALSE(timeline.hasGap(0, timeline.end())) << "long past";
}

TEST(Timeline, followsTheRateAndTheAmountThatFramesDeclare) {
    Facts facts;
    monitoring::Timeline timeline(
        facts, {"020000000001", 2, 0, common::find(common::aafFormats, &common::AafFormat::name, "int16"), 96000},
        96000);
    facts.captureTime = 1'700'000'000'000'000;
    for (const auto &[length, end] : {std::pair(24, 60U), {48, 180U}, {47, 300U}}) { // the last one was refused
        facts.taken += 10;
        facts.dataLength = length;
        timeline.update();
        EXPECT_EQ(timeline.end(), end);
    }
    EXPECT_EQ(timeline.timeOf(300).value() - timeline.timeOf(204).value(), std::chrono::milliseconds(1));
}

} // namespace
