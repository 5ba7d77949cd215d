#include <atomic>
#include <thread>
#include <tuple>

#include <gtest/gtest.h>

#include "avb/AvbAudioBuffer.h"
#include "avb/AvbToFloatSampleConverter.h"
#include "core/configuration/BufferConfiguration.h"
#include "support/LogRecorder.h"
#include "support/NoticeRecorder.h"
#include "support/capture.h"

namespace {

using support::ramp;

/// The law of the ring, sample by sample and without a thought for speed.
struct Model {
    explicit Model(std::size_t size, unsigned signalAmount) : cells(size, 0.0F), signalAmount(signalAmount) {}

    void write(float sample) {
        if (!cells.empty()) {
            position = position == cells.size() ? 0 : position;
            cells[position++] = sample;
        }
        if (++sinceSignal == signalAmount) {
            signaled = position;
            sinceSignal = 0;
            ++signalCount;
        }
    }

    std::vector<float> before(std::size_t end, std::size_t amount) const {
        std::vector<float> result;
        for (std::size_t i = 0; i < amount; ++i) {
            // End 0 stands for the untouched ring, which is read from its first cell.
            result.push_back(end == 0 ? cells[i] : cells[(end + cells.size() - amount + i) % cells.size()]);
        }
        return result;
    }

    std::vector<float> cells;
    unsigned signalAmount;
    std::size_t position = 0;
    std::size_t signaled = 0;
    unsigned sinceSignal = 0;
    std::size_t signalCount = 0;
};

class AudioBufferSizes : public testing::TestWithParam<std::tuple<unsigned, unsigned>> {};

TEST_P(AudioBufferSizes, blocksOfAnyLengthActLikeSingleSamples) {
    const auto [size, signalAmount] = GetParam();
    sonvex::BufferConfiguration configuration("b", size, signalAmount);
    avb::AvbAudioBuffer blockwise("blockwise", configuration);
    avb::AvbAudioBuffer single("single", configuration);
    Model model(size, signalAmount);
    std::size_t signals = 0;
    QObject::connect(&blockwise, &avb::AvbAudioBuffer::bufferAmountAvailable,
                     [&, amount = signalAmount](const std::string &name, std::size_t signaled) {
                         EXPECT_EQ(name, "blockwise");
                         EXPECT_EQ(signaled, amount);
                         ++signals;
                     });
    float next = 1;
    for (const std::size_t amount : {1U, 0U, 2U, 3U, 4U, 5U, 6U, 7U, 13U, 48U, 253U, 6U, 1U, 100U}) {
        const std::vector<float> values = ramp(next, amount);
        next += static_cast<float>(amount);
        blockwise.writeSamples(values.data(), values.size());
        for (const float value : values) {
            single.writeSample(value);
            model.write(value);
        }
        for (const std::size_t wanted : {std::size_t{0}, std::size_t{size} / 2, std::size_t{size}}) {
            ASSERT_EQ(blockwise.fetchLatestSamples(wanted), model.before(model.position, wanted));
            ASSERT_EQ(blockwise.fetchSignaledSamples(wanted), model.before(model.signaled, wanted));
            ASSERT_EQ(single.fetchLatestSamples(wanted), model.before(model.position, wanted));
        }
        ASSERT_EQ(signals, model.signalCount);
    }
}

INSTANTIATE_TEST_SUITE_P(AwkwardSizes, AudioBufferSizes,
                         testing::Combine(testing::Values(0U, 1U, 3U, 4U, 11U, 250U),
                                          testing::Values(0U, 1U, 3U, 6U, 250U, 251U)));

TEST(AudioBuffer, startsCountingAnewWhenTheSignalingChanges) {
    sonvex::BufferConfiguration configuration("b", 10, 4);
    avb::AvbAudioBuffer buffer("clock", configuration);
    std::size_t signals = 0;
    QObject::connect(&buffer, &avb::AvbAudioBuffer::bufferAmountAvailable, [&] { ++signals; });
    const auto write = [&](std::size_t amount) { buffer.writeSamples(ramp(1, amount).data(), amount); };
    write(3);
    support::NoticeRecorder notices(configuration);
    const support::LogRecorder log;
    configuration.setClockSignalingSampleAmount(5);
    configuration.setClockSignalingSampleAmount(5); // no change, no notice
    write(4);
    EXPECT_EQ(signals, 0U);
    write(1);
    EXPECT_EQ(signals, 1U);
    configuration.setClockSignalingSampleAmount(0);
    EXPECT_EQ(configuration.toString(), "[b]\n\tBuffer size: 10\n\tBuffer clock signaling deactivated!");
    write(20);
    EXPECT_EQ(signals, 1U);
    EXPECT_EQ(buffer.fetchSamples(5, 8), buffer.fetchSignaledSamples(5)); // the position stays where it was
    configuration.setClockSignalingSampleAmount(7);
    write(6);
    EXPECT_EQ(signals, 1U);
    write(1);
    EXPECT_EQ(signals, 2U);
    EXPECT_EQ(notices.take(), std::vector<std::string>(3, "SignalingSampleAmountChnaged"));
    Q_EMIT configuration.configurationChanged("SampleAmountChanged"); // another parameter's notice
    EXPECT_EQ(buffer.fetchLatestSamples(11), buffer.fetchLatestSamples(10));
    const std::string context = "D avb::AvbAudioBuffer::sampleAmountConfigChanged \"clock\" ";
    EXPECT_EQ(log.lines(),
              (std::vector<std::string>{context + "Signaling sample amount changed to:  5  samples",
                                        context + "Signaling sample amount deactivated (external clock OFF)",
                                        context + "Signaling sample amount changed to:  7  samples",
                                        "W avb::AvbAudioBuffer::fetchSamples \"clock\" More samples requested than "
                                        "available by the buffer.  Only maximum available amount will be returned:  "
                                        "10  instead of  11"}));
}

TEST(AudioBuffer, givesWholeBlocksWhileACaptureWrites) {
    sonvex::BufferConfiguration configuration("b", 1000, 48);
    avb::AvbAudioBuffer buffer("shared", configuration);
    buffer.writeSamples(ramp(1, 1008).data(), 1008); // no cell is unwritten, and a block is signaled
    std::atomic<bool> ended{false};
    std::thread capture([&] {
        float next = 1009; // whole numbers stay exact
        for (int frame = 0; frame < 20000; ++frame, next += 6) {
            buffer.writeSamples(ramp(next, 6).data(), 6);
        }
        ended = true;
    });
    int torn = 0;
    for (bool latest = true; !ended; latest = !latest) {
        const auto block = latest ? buffer.fetchLatestSamples(500) : buffer.fetchSignaledSamples(480);
        torn += block == ramp(block.front(), block.size()) ? 0 : 1;
    }
    capture.join();
    EXPECT_EQ(torn, 0);
}

TEST(SampleConverter, refusesOtherWidthsWithSilenceAndAWarning) {
    const avb::AvbToFloatSampleConverter converter;
    const std::vector<std::uint8_t> bytes(12, 0x11);
    for (const unsigned width : {0U, 1U, 3U, 4U}) {
        const support::LogRecorder log;
        EXPECT_EQ(converter.convertFromBigEndian(bytes.data(), width), 0.0F);
        EXPECT_EQ(log.lines(), std::vector<std::string>{
                                   "W avb::AvbToFloatSampleConverter::convertFromBigEndian Cannot convert array data "
                                   "to float. Wrong array size:  " +
                                   std::to_string(width) + "  (required:  2"});
    }
}

} // namespace
