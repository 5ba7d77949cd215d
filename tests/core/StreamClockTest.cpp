// What the times of frames imply, from times that the test makes.
#include <cmath>
#include <functional>

#include <gtest/gtest.h>

#include "core/facts/StreamFacts.h"

namespace {

/// Frames of 6 samples of 2 channels of 16 bits, whose clocks run as they are told.
class Times {
public:
    Times() {
        facts.begin();
        facts.declared(4, 5, 2, 16, 24);
    }

    void send(unsigned amount) {
        for (unsigned i = 0; i < amount; ++i, ++frame) {
            const double nominal = static_cast<double>(frame) * 125e-6;
            const double late = lateness(frame);
            facts.arrived({1'700'000'000'000'000 + static_cast<std::int64_t>(
                                                       std::llround((nominal / (1 + arrivalPpm * 1e-6) + late) * 1e6)),
                           static_cast<std::uint32_t>(static_cast<std::int64_t>(
                               std::llround(nominal / (1 + presentationPpm * 1e-6) * 1e9) + presentationJump)),
                           frame % validEach == 0, uncertain, restart},
                          0, -1);
        }
    }
    void skip(std::uint8_t frames) {
        frame += frames;
        send(1);
        facts.gapped(frames);
    }
    sonvex::StreamClock clock() const { return facts.getClock(); }

    double arrivalPpm = 0;
    double presentationPpm = 0;
    std::int64_t presentationJump = 4'000'000'000; // close to where it goes round
    std::function<double(std::uint64_t)> lateness = [](std::uint64_t) { return 0.0; };
    unsigned validEach = 1;
    bool uncertain = false;
    bool restart = true; // from the first frame on: none has happened
    std::uint64_t frame = 0;
    facts::StreamFacts facts;
};

TEST(StreamClock, knowsBothRatesWhateverFramesAreLostOrUntimed) {
    for (const unsigned validEach : {1U, 8U}) {
        for (const unsigned lost : {0U, 1U, 200U}) {
            for (const double ppm : {0.0, 50.0, -80.0}) {
                SCOPED_TRACE(testing::Message() << validEach << ' ' << lost << ' ' << ppm);
                Times times;
                times.validEach = validEach;
                times.presentationPpm = ppm;
                times.arrivalPpm = -ppm / 2;
                times.lateness = [](std::uint64_t frame) { return 1e-6 * static_cast<double>(frame * 7919 % 100); };
                for (int part = 0; part < 100; ++part) {
                    times.send(1000);
                    if (lost > 0) {
                        times.skip(static_cast<std::uint8_t>(lost));
                    }
                }
                const sonvex::StreamClock clock = times.clock();
                EXPECT_NEAR(clock.presentationOffset, ppm, 0.1);
                EXPECT_NEAR(clock.arrivalOffset, -ppm / 2, lost < 200 ? 1.0 : 400.0); // stretches of 1/8 s
                EXPECT_NEAR(static_cast<double>(clock.timestampsValid), 100'000.0 / validEach, 110);
                EXPECT_GE(clock.leastDistance, 24.0);
                EXPECT_LT(clock.leastDistance, 50.0);
                EXPECT_NEAR(clock.meanDistance, 125.0, lost == 0 ? 0.1 : lost == 1 ? 0.2 : 5.0);
                EXPECT_NEAR(clock.greatestDistance, 224.0 + 125.0 * lost, 110.0);
            }
        }
    }
}

TEST(StreamClock, forgetsWhatIsOlderThanTenSeconds) {
    Times times;
    EXPECT_TRUE(std::isnan(times.clock().arrivalOffset));
    times.send(4000); // half a second
    EXPECT_TRUE(std::isnan(times.clock().presentationOffset));
    EXPECT_NEAR(times.clock().meanDistance, 125.0, 0.1);
    times.lateness = [](std::uint64_t frame) { return frame == 5000 ? 0.003 : 0.0; };
    times.send(12000);
    EXPECT_NEAR(times.clock().greatestDistance, 3125.0, 1.0);
    EXPECT_NEAR(times.clock().presentationOffset, 0.0, 0.01);
    times.send(8000 * 11);
    EXPECT_NEAR(times.clock().greatestDistance, 125.0, 1.0);
}

TEST(StreamClock, bearsRestartsPausesAndAClockThatIsSetBack) {
    Times times;
    times.presentationPpm = times.arrivalPpm = 20;
    times.send(20'000);
    times.restart = false;
    times.presentationJump += 123'456'789;
    times.uncertain = true;
    times.send(10);
    times.uncertain = false;
    times.send(20'000);
    EXPECT_EQ(times.clock().restarts, 1U);
    EXPECT_EQ(times.clock().timestampsUncertain, 10U);
    EXPECT_NEAR(times.clock().presentationOffset, 20, 0.1);
    EXPECT_NEAR(times.clock().arrivalOffset, 20, 0.5);
    times.lateness = [](std::uint64_t) { return 3.0; };
    times.send(16'000); // three seconds late
    EXPECT_NEAR(times.clock().arrivalOffset, 20, 0.5);
    EXPECT_NEAR(times.clock().greatestDistance, 3'000'125, 10);
    times.lateness = [](std::uint64_t) { return -3600.0; };
    times.send(16'000);
    EXPECT_NEAR(times.clock().arrivalOffset, 20, 0.5);
    EXPECT_GE(times.clock().leastDistance, 0.0);
    times.facts.declared(2, 5, 2, 32, 96); // frames of 12 samples from here on
    EXPECT_TRUE(std::isnan(times.clock().arrivalOffset));
    times.send(16'000);
    EXPECT_NEAR(times.clock().arrivalOffset, 1e6, 100);
}

} // namespace
