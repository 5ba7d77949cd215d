// What a good frame costs from receivePacket on, against the same frames through writeSample sample by sample.
#include <array>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <QtGlobal>

#include "RatioReporter.h"
#include "avb/AvtpPacketReceiver.h"
#include "core/configuration/DeviceConfiguration.h"
#include "talker/AafFrame.h"

namespace {

constexpr char mac[] = "020000000001";
constexpr unsigned bufferSize = 48000;
constexpr unsigned signalAmount = 480;

/// A stream with a clock that nobody listens to, and all frames of a round of its sequence numbers.
struct Stream {
    Stream(unsigned channels, unsigned samples)
        : buffer("buffer", bufferSize, signalAmount), device("device", &buffer, 2, channels, samples) {
        const common::MacAddress source{0x02, 0, 0, 0, 0, 0x01};
        for (unsigned sequence = 0; sequence < frames.size(); ++sequence) {
            frames[sequence] = std::make_unique<talker::AafFrame>(source, source, channels, samples);
            frames[sequence]->setSequence(static_cast<std::uint8_t>(sequence));
            for (unsigned sample = 0; sample < samples; ++sample) {
                for (unsigned channel = 0; channel < channels; ++channel) {
                    frames[sequence]->setSample(sample, channel, (sequence * 97 + sample) / 32768.0);
                }
            }
        }
    }

    sonvex::BufferConfiguration buffer;
    sonvex::DeviceConfiguration device;
    std::array<std::unique_ptr<talker::AafFrame>, 256> frames;
};

void receiveFrames(benchmark::State &state, unsigned channels, unsigned samples) {
    Stream stream(channels, samples);
    avb::AvtpPacketReceiver receiver(2, nullptr);
    receiver.addStreamingDevice(mac, stream.device);
    std::uint8_t next = 0;
    pcap_pkthdr header{};
    for (auto _ : state) {
        const talker::AafFrame &frame = *stream.frames[next++];
        header.ts.tv_usec = (header.ts.tv_usec + 125) % 1'000'000; // 8000 frames a second
        header.caplen = header.len = static_cast<bpf_u_int32>(frame.size());
        receiver.receivePacket(nullptr, &header, frame.data());
    }
}

/// The same checks, then each sample of each channel by itself: one conversion, one call and one lock.
void receiveSamples(benchmark::State &state, unsigned channels, unsigned samples) {
    Stream stream(channels, samples);
    avb::AvtpPacketChecker checker(mac, channels, nullptr);
    const avb::AvbToFloatSampleConverter converter;
    std::vector<std::unique_ptr<avb::AvbAudioBuffer>> buffers;
    for (unsigned channel = 0; channel < channels; ++channel) {
        buffers.push_back(std::make_unique<avb::AvbAudioBuffer>(std::to_string(channel), stream.buffer));
    }
    std::mutex frameMutex;
    std::uint8_t next = 0;
    for (auto _ : state) {
        const talker::AafFrame &bytes = *stream.frames[next++];
        const auto length = static_cast<std::uint32_t>(bytes.size());
        const avb::AvtpFrame frame(bytes.data(), length, length);
        const std::lock_guard<std::mutex> lock(frameMutex);
        if (!checker.isPacketConform(frame) || !checker.isSequenceNrInOrder(frame) ||
            checker.checkChannelAmount(static_cast<std::int32_t>(channels)) == 0 ||
            !checker.checkDataLength(std::uint64_t{2} * channels * samples)) {
            state.SkipWithError("a good frame was refused");
            return;
        }
        const std::uint8_t *sample = frame.samples(std::uint64_t{2} * channels * samples);
        for (unsigned position = 0; position < samples; ++position) {
            for (unsigned channel = 0; channel < channels; ++channel, sample += 2) {
                buffers[channel]->writeSample(converter.convertFromBigEndian(sample, 2));
            }
        }
    }
}

} // namespace

int main(int argc, char **argv) {
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    for (const auto &[channels, samples] : {std::pair{2U, 6U}, {8U, 6U}, {8U, 48U}, {60U, 6U}}) {
        const std::string name = std::to_string(channels) + "x" + std::to_string(samples);
        benchmark::RegisterBenchmark(("reception/receivePacket/" + name).c_str(), receiveFrames, channels, samples);
        benchmark::RegisterBenchmark(("reception/writeSample/" + name).c_str(), receiveSamples, channels, samples);
    }
    return runRatioBenchmarks(argc, argv, {"writeSample"});
}
