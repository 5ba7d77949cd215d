#include <cstdint>
#include <cstring>

#include <gtest/gtest.h>

#include "process/configuration/SpectrumConfig.h"
#include "support/LogRecorder.h"
#include "support/NoticeRecorder.h"

namespace {

using Lines = std::vector<std::string>;

Lines linesOfOrder(unsigned int order, unsigned int size) {
    return {"D process::SpectrumConfig::setFftOrder FFT order is set to:  " + std::to_string(order),
            "D process::SpectrumConfig::setFftOrder FFT size is set to:  " + std::to_string(size)};
}

/// A fresh configuration whose log and notices are recorded from here on.
class SpectrumConfig : public testing::Test {
protected:
    void expectFft(unsigned int order, unsigned int size) {
        EXPECT_EQ(config.getFftOrder(), order);
        EXPECT_EQ(config.getFftSize(), size);
        EXPECT_EQ(config.getSampleAmount(), size);
    }

    process::SpectrumConfig config{"conf", 480, "SpectrumProcessor"};
    support::NoticeRecorder notices{config};
    support::LogRecorder log;
};

TEST_F(SpectrumConfig, startsWithItsDefaultsWhateverSampleAmountItGot) {
    expectFft(14, 16384);
    EXPECT_FALSE(config.isMovingAverageActive());
    EXPECT_EQ(config.getMovingAverageWindowSize(), 16U);
    EXPECT_EQ(config.getMovingAverageWindowLength(), 10000U);
    const float factor = config.getPowerScaleFactor();
    std::uint32_t bits = 0;
    std::memcpy(&bits, &factor, sizeof bits);
    EXPECT_EQ(bits, 0x40AAB021U);
    EXPECT_EQ(config.toString(), "SpectrumProcessor: conf\n\tProcessor type: SpectrumProcessor\n\tRefresh rate: 500\n"
                                 "\tSample amount: 16384\n\tClock type: External clock\n\tFFT order: 14");
}

TEST_F(SpectrumConfig, logsTheOrderThatItSetsAtConstruction) {
    const process::SpectrumConfig fresh("conf", 480, 250, "SpectrumProcessor");
    const Lines lines = log.lines();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(Lines(lines.begin() + 1, lines.end()), linesOfOrder(14, 16384));
}

TEST_F(SpectrumConfig, followsEveryPowerOfTwoWithOrderSizeAndSampleAmount) {
    for (const unsigned int order : {1U, 10U, 31U}) {
        log.clear();
        config.setFftSize(1U << order);
        expectFft(order, 1U << order);
        EXPECT_EQ(notices.take(), (Lines{"SampleAmountChanged", "FFTOrderChanged"}));
        EXPECT_EQ(log.lines(), linesOfOrder(order, 1U << order));
    }
}

TEST_F(SpectrumConfig, refusesSizesThatAreNoPowerOfTwo) {
    for (const unsigned int size : {0U, 3U, 1000U, 16383U, 16385U, ~0U}) {
        log.clear();
        config.setFftSize(size);
        const std::string text = std::to_string(size);
        EXPECT_EQ(log.lines(), (Lines{"W process::SpectrumConfig::isValuePowerOfTwo Value is no power of two:  " + text,
                                      "W process::SpectrumConfig::setFftSize Invalid FFT size set! Size ignored:  \"" +
                                          text + "\""}));
    }
    expectFft(14, 16384);
    EXPECT_EQ(notices.take(), Lines{});
}

TEST_F(SpectrumConfig, refusesOrderZeroHoweverItIsSetAndOrdersWhoseSizeExceeds32Bits) {
    config.setFftOrder(0);
    config.setFftSize(1);
    const std::string context = "W process::SpectrumConfig::setFftOrder ";
    const std::string line = context + "FFT order zero not supported! Please pass a valid order value";
    EXPECT_EQ(log.lines(), (Lines{line, line}));
    for (const unsigned int order : {32U, 33U, ~0U}) {
        log.clear();
        config.setFftOrder(order);
        ASSERT_EQ(log.lines().size(), 1U);
        EXPECT_EQ(log.lines().front().find(context), 0U);
    }
    expectFft(14, 16384);
    EXPECT_EQ(notices.take(), Lines{});
}

TEST_F(SpectrumConfig, dropsASampleAmountThroughEveryFace) {
    const std::string line = "W process::SpectrumConfig::setSampleAmount Sample amount ignored by internal sample "
                             "amount auto detection!";
    static_cast<process::SampleProcessorConfigBase &>(config).setSampleAmount(480);
    static_cast<sonvex::iprocess::ISpectrumConfig &>(config).setSampleAmount(480);
    expectFft(14, 16384);
    EXPECT_EQ(log.lines(), (Lines{line, line}));
    EXPECT_EQ(notices.take(), Lines{});
}

TEST_F(SpectrumConfig, announcesEveryWindowButOrderAndActivityOnlyWhenTheyChange) {
    config.setFftOrder(14);
    config.setFftSize(16384);
    config.setMovingAverageActive(false);
    EXPECT_EQ(notices.take(), Lines{});
    config.setMovingAverageActive(true);
    EXPECT_TRUE(config.isMovingAverageActive());
    EXPECT_EQ(notices.take(), Lines{"MovingAverageActivityChanged"});
    config.setMovingAverageWindowSize(16);
    config.setMovingAverageWindowLength(10000);
    EXPECT_EQ(log.lines(), Lines{});
    config.setMovingAverageWindowSize(8);
    config.setMovingAverageWindowLength(0);
    EXPECT_EQ(config.getMovingAverageWindowSize(), 8U);
    EXPECT_EQ(config.getMovingAverageWindowLength(), 0U);
    EXPECT_EQ(notices.take(), (Lines{"MovingAverageWindowSizeChanged", "MovingAverageWindowLengthChanged",
                                     "MovingAverageWindowSizeChanged", "MovingAverageWindowLengthChanged"}));
    EXPECT_EQ(log.lines(),
              (Lines{"D process::SpectrumConfig::setMovingAverageWindowSize Moving average window Size changed to:  8",
                     "D process::SpectrumConfig::setMovingAverageWindowLength Window Size changed to:  0"}));
}

TEST_F(SpectrumConfig, publishesTheWindowLengthBeforeTheSizeThatWins) {
    static_cast<process::SampleProcessorConfigBase &>(config).publishConfiguration();
    EXPECT_EQ(notices.take(), (Lines{"FFTOrderChanged", "MovingAverageWindowLengthChanged",
                                     "MovingAverageWindowSizeChanged", "MovingAverageActivityChanged",
                                     "SampleAmountChanged", "ClockRefreshRateChanged", "External clock"}));
}

} // namespace
