#include "process/SpectrumProcessor.h"

#include <cmath>
#include <memory>
#include <numeric>

#include <gtest/gtest.h>

#include "avb/AvbAudioBuffer.h"
#include "core/configuration/BufferConfiguration.h"
#include "kernels/ReferenceTransform.h"
#include "kernels/noise.h"
#include "process/configuration/SpectrumConfig.h"
#include "support/LogRecorder.h"
#include "support/ProcessorRun.h"
#include "support/capture.h"
#include "support/waitFor.h"

namespace {

using Samples = std::vector<float>;
using Values = std::vector<double>;

/// The law in double precision: window, transform by 1/N, power times 5.334 of the lower half.
Values powersOf(Samples samples) {
    const auto length = static_cast<double>(samples.size());
    for (std::size_t n = 0; samples.size() > 2 && n < samples.size(); ++n) {
        const double window = 0.5 - 0.5 * std::cos(2 * M_PI * static_cast<double>(n) / (length - 1));
        samples[n] = static_cast<float>(static_cast<double>(samples[n]) * window);
    }
    const support::Bins bins = support::transformByHalving(samples);
    Values powers;
    for (std::size_t k = 0; k < samples.size() / 2; ++k) {
        powers.push_back(5.334 * std::norm(bins[k] / length));
    }
    return powers;
}

/// A channel as long as a block of order 14, and a spectrum processor on it that runs. The test decides on the signals.
class Spectrum : public testing::Test {
protected:
    void run() {
        processor =
            std::make_unique<support::ProcessorRun>(process::SpectrumProcessor::createInstance("s", config, buffer));
        (*processor)->start();
        processor->settle();
    }

    /// The spectra after so many signals of @p samples.
    std::vector<Values> spectraAfter(const Samples &samples) {
        processor->settle();
        processor->results.clear();
        bufferConfig.setClockSignalingSampleAmount(static_cast<unsigned>(samples.size()));
        support::capture(buffer, samples);
        processor->settle();
        std::vector<Values> spectra;
        for (sonvex::ChannelData &result : processor->results) {
            EXPECT_EQ(result.getName(), "DummyChannel");
            spectra.push_back(result.getVectorData().getY());
            Values bins(spectra.back().size());
            std::iota(bins.begin(), bins.end(), 0.0);
            EXPECT_EQ(result.getVectorData().getX(), bins);
        }
        return spectra;
    }

    support::LogRecorder log;
    sonvex::BufferConfiguration bufferConfig{"buffer", 16384, 480};
    avb::AvbAudioBuffer buffer{"ch1", bufferConfig};
    process::SpectrumConfig config{"config", 0, "SpectrumProcessor"};
    std::unique_ptr<support::ProcessorRun> processor;
};

TEST_F(Spectrum, hasSinglePrecisionAtEveryOrder) {
    run();
    for (unsigned order = 1; order <= 14; ++order) {
        config.setFftOrder(order);
        const Samples samples = support::noise<float>(std::size_t{1} << order);
        const auto spectra = spectraAfter(samples);
        ASSERT_EQ(spectra.size(), 1U) << order;
        const Values expected = powersOf(samples);
        ASSERT_EQ(spectra[0].size(), expected.size());
        // The error of a transform grows with the logarithm of its length, against all of its power.
        const double total = std::accumulate(expected.begin(), expected.end(), 0.0);
        const double amplitude = 2e-7 * std::sqrt(order * (total + 1e-12));
        for (std::size_t k = 0; k < expected.size(); ++k) {
            ASSERT_NEAR(std::sqrt(spectra[0][k]), std::sqrt(expected[k]), amplitude) << order << ": " << k;
        }
    }
    EXPECT_NEAR(spectraAfter(Samples(16384, 1.0F))[0][0], 5.334 / 4, 1e-3); // the window's mean is one half
    config.setFftOrder(1);                                                  // two samples can't have a window
    EXPECT_NEAR(spectraAfter({1.0F, 1.0F})[0][0], 5.334, 1e-5);
    config.setFftOrder(10); // from here on there is one again
    EXPECT_NEAR(spectraAfter(Samples(1024, 1.0F))[0][0], 5.334 / 4, 4e-3);
}

TEST_F(Spectrum, followsItsConfigurationWhileItRuns) {
    config.setFftOrder(4);
    config.setMovingAverageActive(true);
    run();
    const Samples constant(16, 1.0F);
    const double level = powersOf(constant)[0];
    for (int cycle = 1; cycle <= 3; ++cycle) {
        EXPECT_NEAR(spectraAfter(constant)[0][0], cycle * level / 16, 1e-6);
    }
    config.setMovingAverageWindowSize(2);
    EXPECT_NEAR(spectraAfter(constant)[0][0], level / 2, 1e-6);
    config.setMovingAverageActive(false);
    EXPECT_NEAR(spectraAfter(constant)[0][0], level, 1e-6);
    (*processor)->stop();
    EXPECT_TRUE(spectraAfter(constant).empty());
    (*processor)->start();
    config.setRefreshRate(5);
    config.setClockType("Internal clock");
    processor->settle();
    processor->results.clear();
    ASSERT_TRUE(support::waitFor([&] { return processor->results.size() >= 3; }));
    EXPECT_NEAR(processor->results.back().getVectorData().getY()[0], level, 1e-6);
}

TEST_F(Spectrum, deliversNothingUntilAnOrderFitsAgain) {
    config.setFftOrder(4);
    run();
    const Samples samples = support::noise<float>(16);
    for (const unsigned order : {28U, 31U, 15U}) {
        config.setFftOrder(order);
        processor->settle();
        log.clear();
        EXPECT_TRUE(spectraAfter(samples).empty()) << order;
        const std::string size = order == 15 ? "32768" : "16";
        EXPECT_EQ(
            log.count("W process::fft::IppFft::calculate \"s_FFT\" Input data vector size '  16384 ' don't equals the "
                      "predefined FFT size:  " +
                      size + " ! FFT calculation skipped!"),
            1)
            << order;
        config.setFftOrder(order); // no change, no notice
        config.setFftOrder(4);
        EXPECT_EQ(spectraAfter(samples).size(), 1U) << order;
    }
    EXPECT_EQ(log.count("FFT order is out of range"), 0);
}

TEST_F(Spectrum, logsAndPrintsItself) {
    config.setFftOrder(11);
    run();
    EXPECT_EQ(log.count("D process::SpectrumProcessor::SpectrumProcessor \"s\" Initialized"), 1);
    EXPECT_EQ(log.count("D process::SpectrumProcessor::sampleAmountChanged \"s\" Processed amount of samples:  2048"),
              7);
    EXPECT_EQ(log.count("D process::averaging::MovingAverage::MovingAverage \"s_Averager\" Initialized!"), 1);
    EXPECT_EQ(log.count("SampleProcessorBase::sampleAmountChanged"), 0);
    const std::string text = (*processor)->toString();
    EXPECT_EQ(text.find("Processor: s\n"), 0U);
    EXPECT_NE(text.find("\n\tActive: 0\nIppFft: s_FFT\n\tFFT order: 11\n"), std::string::npos) << text;
    for (unsigned order = 1; order <= 14; ++order) {
        config.setFftOrder(order);
        EXPECT_FALSE((*processor)->toString().empty()); // while the processor's thread sets the order
    }
}

} // namespace
