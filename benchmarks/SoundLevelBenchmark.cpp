// One analysis of sound levels, six cycles of the processor, against its law value by value.
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <random>
#include <vector>

#include <QtGlobal>

#include "CpuLevelBenchmarks.h"
#include "DrivenProcessor.h"
#include "RatioReporter.h"
#include "avb/AvbAudioBuffer.h"
#include "core/configuration/BufferConfiguration.h"
#include "process/SoundLevelValueProcessor.h"
#include "process/configuration/SoundLevelValueConfig.h"
#include "support/SoundLevelModel.h"

namespace {

constexpr unsigned cyclesPerResult = 6;

/// A channel full of noise, and the levels of its latest samples.
struct Channel {
    explicit Channel(unsigned amount)
        : bufferConfig("buffer", 48000, amount), buffer("channel", bufferConfig), config("levels", amount) {
        std::mt19937 random(1);
        std::uniform_real_distribution<float> range(-1, 1);
        std::vector<float> samples(48000 / amount * amount);
        for (float &sample : samples) {
            sample = range(random);
        }
        buffer.writeSamples(samples.data(), samples.size());
        processor = std::make_unique<DrivenProcessor>(
            process::SoundLevelValueProcessor::createInstance("levels", config, buffer), buffer,
            amount / cyclesPerResult, [this](sonvex::ChannelData result) { levels = result.getVectorData().getY(); });
        processor->cycle(); // sets the filters up
    }

    void analyse() {
        for (unsigned cycle = 0; cycle < cyclesPerResult; ++cycle) {
            processor->cycle();
        }
    }

    sonvex::BufferConfiguration bufferConfig;
    avb::AvbAudioBuffer buffer;
    process::SoundLevelValueConfig config;
    std::vector<double> levels;
    std::unique_ptr<DrivenProcessor> processor;
};

/// The largest difference of some analyses in a row, in dB.
double difference(unsigned amount) {
    Channel channel(amount);
    support::SoundLevelModel law;
    const std::vector<float> samples = channel.buffer.fetchSignaledSamples(amount);
    double largest = 0;
    for (int block = 0; block < 100; ++block) {
        channel.analyse();
        const std::vector<double> expected = law.measure(samples);
        for (std::size_t index = 0; index < expected.size(); ++index) {
            largest = std::max(largest, std::abs(channel.levels.at(index) - expected[index]));
        }
    }
    return largest;
}

} // namespace

int main(int argc, char **argv) {
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    for (const unsigned amount : {600U, 4800U}) {
        const double largest = difference(amount);
        std::cerr << "levels of " << amount << " samples: within " << largest << " dB of the law\n";
        if (!(largest < 1e-9)) {
            return EXIT_FAILURE;
        }
        const std::string row = std::to_string(amount) + " samples";
        const auto law = std::make_shared<support::SoundLevelModel>();
        const auto source = std::make_shared<Channel>(amount);
        registerPeer("levels", "law", row,
                     [=] { benchmark::DoNotOptimize(law->measure(source->buffer.fetchSignaledSamples(amount))); });
        registerAtAllLevels("levels", row, [amount]() -> std::function<void()> {
            const auto channel = std::make_shared<Channel>(amount);
            return [channel] { channel->analyse(); };
        });
    }
    return runRatioBenchmarks(argc, argv, {"law"});
}
