#include "process/averaging/MovingAverage.h"

#include <cmath>
#include <functional>
#include <limits>

#include <gtest/gtest.h>

#include "core/configuration/BufferConfiguration.h"
#include "process/configuration/SpectrumConfig.h"
#include "support/LogRecorder.h"

namespace {

using Values = std::vector<double>;

const std::string internalClock = "Internal clock";
const std::string externalClock = "External clock";

/// An averager on the external clock with cycles of 100 ms, active.
class MovingAverage : public testing::Test {
protected:
    MovingAverage() {
        config.publishConfiguration();
        config.setMovingAverageActive(true);
    }

    Values feed(double value, std::size_t length = 1) { return average.calculate(Values(length, value)); }

    /// The size of the window, from how fast a mean rises in it.
    long window() {
        config.setMovingAverageActive(false);
        config.setMovingAverageActive(true);
        return std::lround(1.0 / feed(1.0)[0]);
    }

    support::LogRecorder log;
    sonvex::BufferConfiguration buffer{"buffer", 48000, 4800};
    process::SpectrumConfig config{"config", 0, "SpectrumProcessor"};
    process::averaging::MovingAverage average{"a", &config, &buffer, nullptr};
};

TEST_F(MovingAverage, risesFromZeroOverItsWindow) {
    config.setMovingAverageWindowSize(4);
    EXPECT_EQ(feed(1.0), Values{0.25});
    EXPECT_EQ(feed(1.0, 3), Values(3, 0.25)) << "another length starts anew";
    EXPECT_EQ(log.lines().back(),
              "D process::averaging::MovingAverage::setVectorLength \"a\" Moving window vector length set to:  3");
    config.setMovingAverageActive(false);
    EXPECT_EQ(feed(8.0, 3), Values(3, 8.0));
    config.setMovingAverageActive(true);
    EXPECT_EQ(feed(1.0, 3), Values(3, 0.25)) << "the ring was emptied";
}

/// The law with all its cells: 100 cycles by increments, then one by the full sum.
class Law {
public:
    Law(std::size_t size, std::size_t length) : ring(size, Values(length)), mean(length) {}

    const Values &add(const Values &input) {
        const bool isFull = counter == 100;
        counter = isFull ? 0 : counter + 1;
        const auto size = static_cast<double>(ring.size());
        for (std::size_t i = 0; i < mean.size(); ++i) {
            mean[i] = isFull ? 0.0 : mean[i] + (input[i] - ring[next][i]) / size;
        }
        ring[next] = input;
        next = (next + 1) % ring.size();
        for (std::size_t i = 0; isFull && i < mean.size(); ++i) {
            for (const Values &values : ring) {
                mean[i] += values[i];
            }
            mean[i] /= size;
        }
        return mean;
    }

private:
    std::vector<Values> ring;
    Values mean;
    std::size_t next = 0;
    int counter = 0;
};

TEST_F(MovingAverage, followsItsLawToTheLastDigitPastTheFullSums) {
    for (const unsigned size : {2U, 16U, 7U, 150U}) {
        process::averaging::MovingAverage fresh("fresh", &config, &buffer, nullptr);
        config.setMovingAverageWindowSize(size);
        Law law(size, 5);
        for (int cycle = 1; cycle <= 310; ++cycle) {
            Values input;
            for (int i = 0; i < 5; ++i) {
                input.push_back(std::abs(std::sin(cycle * 12.9898 + i * 78.233)) * std::pow(10.0, i - 3));
            }
            ASSERT_EQ(fresh.calculate(input), law.add(input)) << size << " cycles, cycle " << cycle;
        }
    }
}

TEST_F(MovingAverage, keepsTheLengthWhenTheClockChangesAndTheSizeUntilThen) {
    struct Step {
        const char *name;
        std::function<void()> run;
        long expectedWindow;
    };
    const std::vector<Step> steps = {
        {"size", [&] { config.setMovingAverageWindowSize(50); }, 50}, // 5000 ms
        {"internal", [&] { config.setClockType(internalClock); }, 10},
        {"refresh rate", [&] { config.setRefreshRate(300); }, 16},           // 4800 ms
        {"length", [&] { config.setMovingAverageWindowLength(10000); }, 33}, // 9900 ms
        {"same length", [&] { config.setMovingAverageWindowLength(10000); }, 33},
        {"size again", [&] { config.setMovingAverageWindowSize(50); }, 50}, // 15000 ms
        {"external", [&] { config.setClockType(externalClock); }, 150},
        {"unheard refresh rate", [&] { config.setRefreshRate(7); }, 150},
        {"unheard signals", [&] { buffer.setClockSignalingSampleAmount(9600); }, 150},
        {"order", [&] { config.setFftOrder(9); }, 75}, // tells of a sample amount
        {"no interval", [&] { buffer.setClockSignalingSampleAmount(47), config.setFftOrder(8); }, 75},
        {"size without interval", [&] { config.setMovingAverageWindowSize(20); }, 20},
        {"interval", [&] { buffer.setClockSignalingSampleAmount(48000), config.setFftOrder(9); }, 15},
        {"internal at last", [&] { config.setRefreshRate(500), config.setClockType(internalClock); }, 30}};
    for (const Step &step : steps) {
        step.run();
        EXPECT_EQ(window(), step.expectedWindow) << step.name;
    }
    EXPECT_EQ(log.count("W process::averaging::MovingAverage::updateWindowSize \"a\" Moving window refresh interval of "
                        "zero not allowed!"),
              1);
    EXPECT_EQ(
        log.count("W process::averaging::MovingAverage::updateWindowLength \"a\" Moving window refresh interval of "
                  "zero not allowed!"),
        1);
    EXPECT_EQ(
        log.count("D process::averaging::MovingAverage::setWindowLength \"a\" Moving window length set to:  10000  "
                  "ms"),
        3); // the first one with the configuration, the others over 4800 and 9900
    EXPECT_EQ(
        log.count("D process::averaging::MovingAverage::updateWindowSize \"a\" Moving window refresh interval set "
                  "to:  300  ms"),
        1);
}

TEST_F(MovingAverage, passesThroughWithAWindowBelowTwo) {
    log.clear();
    const std::string warning =
        "W process::averaging::MovingAverage::setWindowSize \"a\" Moving average window size is "
        "too small! Filter deactivated";
    for (const auto &[size, warnings] : {std::pair{1U, 1}, {1U, 1}, {0U, 2}, {0U, 3}}) {
        config.setMovingAverageWindowSize(size);
        EXPECT_EQ(log.count(warning), warnings) << size;
        EXPECT_EQ(feed(3.0), Values{3.0});
        EXPECT_TRUE(average.isActive());
    }
    config.setMovingAverageWindowLength(150);
    EXPECT_EQ(feed(3.0), Values{3.0});
    config.setMovingAverageWindowLength(250);
    EXPECT_EQ(feed(3.0), Values{1.5});
}

TEST_F(MovingAverage, takesNoMemoryForAnAbsurdWindow) {
    constexpr unsigned longest = std::numeric_limits<unsigned>::max();
    config.setMovingAverageWindowSize(longest);
    EXPECT_EQ(feed(1.0, 1000), Values(1000, 1.0 / longest));
    config.setRefreshRate(1);
    config.setClockType(internalClock); // the length makes the size a hundred times larger
    EXPECT_EQ(feed(1.0, 1000), Values(1000, 2.0 / longest)) << "the largest size stays";
    config.setMovingAverageWindowSize(10);
    EXPECT_EQ(feed(1.0), Values{0.1});
}

TEST_F(MovingAverage, startsWithTheSizeOfAFreshConfiguration) {
    EXPECT_EQ(window(), 16);
    process::averaging::MovingAverage unpublished("b", &config, &buffer, nullptr);
    EXPECT_TRUE(unpublished.isActive());
    EXPECT_EQ(unpublished.calculate({1.0}), Values{1.0});
}

} // namespace
