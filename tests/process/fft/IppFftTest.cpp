#include "process/fft/IppFft.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "kernels/ReferenceTransform.h"
#include "kernels/kernels.h"
#include "kernels/noise.h"
#include "support/LogRecorder.h"

namespace {

using Samples = std::vector<float>;

const std::string notInitialized = "The address of the buffer is not initialized and won't be managed:";

class Fft : public testing::Test {
protected:
    support::LogRecorder log;
    process::fft::IppFft fft{"f"};
};

TEST_F(Fft, startsReadyAndLogsWhatItDoesWithoutScratchMemory) {
    const std::vector<std::string> lines = log.lines();
    ASSERT_EQ(lines.size(), 11U);
    EXPECT_EQ(lines[0], "D process::fft::IppFftBufferManager::IppFftBufferManager \"f\" Initialized");
    EXPECT_EQ(lines[1], "D process::fft::IppFftBuffers::IppFftBuffers \"f\" Initialized");
    EXPECT_EQ(lines[2].find("D process::fft::IppFft::ippVersionInfo \"f\" Activated INTEL IPP module:  "), 0U);
    EXPECT_EQ(lines[3], "D process::fft::IppFftBufferManager::freeBuffers \"f\" Available amount of buffers:  0 . "
                        "Buffers released:  0");
    EXPECT_EQ(lines[4], "D process::fft::IppFftBuffers::allocateAllIppBuffersFromSameSize \"f\" FFT Buffers allocated "
                        "by size:  4  samples");
    for (const std::size_t scratch : {5U, 6U}) {
        EXPECT_EQ(lines[scratch].find("W process::fft::IppFftBufferManager::addToIppBuffers " + notInitialized + " 0x"),
                  0U);
    }
    EXPECT_EQ(lines[7], "D process::fft::IppFft::showFftInitializeMessage \"f\" IPP FFT initialized");
    EXPECT_EQ(lines[8], "D process::fft::IppFft::setFftOrder \"f\" FFT order is changed to:  2");
    EXPECT_EQ(lines[9], "D process::fft::IppFft::setWindowing \"f\" Hann window deactivated!");
    EXPECT_EQ(lines[10], "D process::fft::IppFft::IppFft \"f\" Initialized");
}

TEST_F(Fft, countsItsBuffersByOrderInTheDump) {
    const auto dump = [](int order, const std::string &window, int buffers) {
        return "IppFft: f\n\tFFT order: " + std::to_string(order) + "\n\tFFT size: " + std::to_string(1 << order) +
               "\n\tWindowing active: " + window +
               "IppFftBuffers: f\nIppFftBufferManager: f\n\tAmount of managed "
               "buffers: " +
               std::to_string(buffers);
    };
    EXPECT_EQ(fft.toString(), dump(2, "0\n", 5));
    EXPECT_TRUE(fft.setWindowing(true));
    for (const auto &[order, buffers] : {std::pair{3, 5}, {10, 6}, {11, 7}, {14, 7}}) {
        EXPECT_TRUE(fft.setFftOrder(static_cast<unsigned>(order)));
        EXPECT_EQ(fft.toString(), dump(order, "1\n\tWindowing type: Hann\n", buffers));
    }
    log.clear();
    EXPECT_TRUE(fft.setFftOrder(5));
    EXPECT_EQ(log.count("Available amount of buffers:  7 . Buffers released:  7"), 1);
    EXPECT_EQ(log.count("Hann window activated and will be applied!"), 1);
}

TEST_F(Fft, refusesOrdersOutOfRangeAndStaysAsItWas) {
    const std::string before = fft.toString();
    for (const unsigned order : {0U, 28U, 31U, 32U, std::numeric_limits<unsigned>::max()}) {
        log.clear();
        EXPECT_FALSE(fft.setFftOrder(order));
        EXPECT_EQ(log.lines(),
                  (std::vector<std::string>{"W process::fft::IppFft::setFftOrder \"f\" FFT order is out of "
                                            "range ( 1 up to  27 ):  " +
                                            std::to_string(order)}));
        EXPECT_EQ(fft.toString(), before);
    }
    Samples samples(4, 1.0F);
    EXPECT_TRUE(fft.calculate(samples));
}

TEST_F(Fft, losesTheWindowOfTwoSamplesAndNothingElse) {
    EXPECT_TRUE(fft.setFftOrder(1)) << "without a window";
    EXPECT_TRUE(fft.setFftOrder(4));
    EXPECT_TRUE(fft.setWindowing(true));
    EXPECT_FALSE(fft.setFftOrder(1));
    EXPECT_EQ(log.count("W process::fft::IppFft::setWindowingFunction \"f\" Failed to apply the Hann window! Error "
                        "message:  ippStsSizeErr"),
              1);
    EXPECT_FALSE(fft.isWindowingActive());
    Samples samples{1.0F, 0.5F};
    Samples result;
    EXPECT_TRUE(fft.calculate(samples));
    EXPECT_TRUE(fft.getFftResultsPowerSpectrum(result, 0, 0.0F));
    EXPECT_EQ(result, (Samples{0.5625F, 0.0625F}));
}

TEST_F(Fft, leavesABlockOfAnotherLengthAlone) {
    fft.setWindowing(true);
    log.clear();
    for (const std::size_t length : {0U, 3U, 5U}) {
        Samples samples(length, 1.0F);
        EXPECT_FALSE(fft.calculate(samples));
        EXPECT_EQ(samples, Samples(length, 1.0F));
    }
    EXPECT_EQ(log.warnings().size(), 3U);
}

TEST_F(Fft, handsOutAnyAmountOfMirroredAndScaledPowers) {
    constexpr std::size_t size = 64;
    EXPECT_TRUE(fft.setFftOrder(6));
    Samples samples = support::noise<float>(size);
    std::vector<double> expected;
    for (const auto &bin : support::transformByHalving(samples)) {
        expected.push_back(std::norm(bin) / (size * size));
    }
    for (std::size_t k = expected.size(); k < size; ++k) {
        expected.push_back(expected[size - k]);
    }
    ASSERT_TRUE(fft.calculate(samples));
    const auto expectPowers = [&](const auto &powers, std::size_t filled, double scale) {
        for (std::size_t k = 0; k < powers.size(); ++k) {
            const double value = k < filled ? scale * expected[k] : 77.0;
            ASSERT_NEAR(powers[k], value, 4e-7 * std::abs(value) + 1e-9)
                << filled << " of " << powers.size() << ": " << k;
        }
    };
    struct Case {
        std::size_t amount;
        std::size_t filled;
        std::size_t before; ///< entries of the result vector
        float factor;
    };
    for (const auto &[amount, filled, before, factor] :
         {Case{0, 64, 0, 0.0F}, {65, 64, 70, 1.0F}, {1, 1, 3, 5.334F}, {33, 33, 10, -1.0F}, {34, 34, 40, 2.5F}}) {
        Samples result(before, 77.0F);
        ASSERT_TRUE(fft.getFftResultsPowerSpectrum(result, amount, factor));
        ASSERT_EQ(result.size(), std::max(before, filled));
        expectPowers(result, filled, factor == 0.0F ? 1.0 : static_cast<double>(factor));
    }
    for (const std::size_t amount : {1U, 33U, 34U}) {
        std::vector<double> powers(amount, 77.0);
        ASSERT_TRUE(fft.getFftResultsPowerSpectrum(powers, 2.5F));
        expectPowers(powers, 33, 2.5);
    }
}

TEST(FftBuffers, refuseVariablesThatCanNotBeManaged) {
    support::LogRecorder log;
    process::fft::IppFftBufferManager manager("m");
    Ipp32f *variable = nullptr;
    auto *const address = reinterpret_cast<void **>(&variable);
    EXPECT_FALSE(manager.addToIppBuffers(address));
    EXPECT_FALSE(manager.allocateIppBuffer32f(&variable, 0));
    EXPECT_EQ(log.count("W process::fft::IppFftBufferManager::addToIppBuffers " + notInitialized + " 0x"), 2);
    EXPECT_TRUE(manager.allocateIppBuffer32f(&variable, 16));
    EXPECT_FALSE(manager.allocateIppBuffer32f(&variable, 16));
    EXPECT_EQ(log.count("W process::fft::IppFftBufferManager::addBufferDeniedMessageToLog The address of the buffer is "
                        "already initialized and won't be managed: 0x"),
              1);
    variable[15] = 1.0F;
    EXPECT_EQ(manager.toString(), "IppFftBufferManager: m\n\tAmount of managed buffers: 1");
    manager.freeBuffers();
    EXPECT_EQ(variable, nullptr);
    EXPECT_EQ(log.lines().back(),
              "D process::fft::IppFftBufferManager::freeBuffers \"m\" Available amount of buffers:  1 "
              ". Buffers released:  1");
}

TEST(FftBuffers, areReleasedOnceAtTheEnd) {
    support::LogRecorder log;
    {
        process::fft::IppFftBuffers buffers("b");
        EXPECT_TRUE(buffers.allocateAllIppBuffersFromSameSize(8));
        EXPECT_FALSE(buffers.allocateAllIppBuffersFromSameSize(8)) << "while the first ones are there";
        EXPECT_EQ(log.lines().back(),
                  "W process::fft::IppFftBuffers::allocateAllIppBuffersFromSameSize Cannot set the IPP "
                  "buffers to size:  8 ! Allocation failed!");
        log.clear();
    }
    EXPECT_EQ(log.lines(),
              (std::vector<std::string>{
                  "D process::fft::IppFftBufferManager::~IppFftBufferManager \"b\" Try to release the managed "
                  "buffers...",
                  "D process::fft::IppFftBufferManager::freeBuffers \"b\" Available amount of buffers:  4 . "
                  "Buffers released:  4"}));
}

} // namespace
