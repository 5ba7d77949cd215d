// What a good frame costs from the capture's callback on, against the same frames sample by sample.
#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <QtGlobal>

#include "PlainReception.h"
#include "RatioReporter.h"
#include "avb/AvtpPacketReceiver.h"
#include "core/configuration/DeviceConfiguration.h"
#include "pcapplus/UntaggedFrame.h"
#include "talker/AafFrame.h"

namespace {

constexpr unsigned bufferSize = 48000;
constexpr unsigned signalAmount = 480;
constexpr unsigned manyStreams = 64;

struct Case {
    unsigned channels;
    unsigned samples;
    sonvex::SampleFormat format = sonvex::SampleFormat::Int16;
    unsigned streams = 1; ///< that are received; the frames are of the last one
    bool tagged = false;

    unsigned sampleSize() const { return format == sonvex::SampleFormat::Int16 ? 2 : 4; }
    std::string name() const {
        return std::to_string(channels) + "x" + std::to_string(samples) + (sampleSize() == 4 ? " int32" : "");
    }
};

/// Frames for a round of their sequence numbers, one behind the other as in a capture's ring.
class Frames {
public:
    explicit Frames(const Case &test) {
        auto frame = std::make_unique<talker::AafFrame>(
            common::MacAddress{2, 0, 0, 0, 0, 1}, common::MacAddress{2, 0, 0, 0, 0, 1},
            talker::FrameFormat{test.channels, test.samples,
                                talker::FrameFormat::parseFormat(test.sampleSize() == 2 ? "int16" : "int32", ""),
                                talker::FrameFormat::parseRate("48000", "")});
        if (test.tagged) {
            frame->setTag(talker::VlanTag::parse("2", ""));
        }
        size = frame->size();
        distance = (size + 82 + 15) / 16 * 16; // with what the capture keeps of each
        bytes.resize(amount * distance);
        for (unsigned number = 0; number < amount; ++number) {
            frame->setSequence(static_cast<std::uint8_t>(number));
            for (unsigned sample = 0; sample < test.samples; ++sample) {
                for (unsigned channel = 0; channel < test.channels; ++channel) {
                    frame->setSample(sample, channel, (number * 97 + sample) % 32768 / 32768.0);
                }
            }
            std::uint8_t *const copy = bytes.data() + number * distance;
            std::memcpy(copy, frame->data(), size);
            copy[11] = static_cast<std::uint8_t>(test.streams); // of the source
        }
    }

    /// For ever. A tag is in its place again.
    std::uint8_t *next() {
        std::uint8_t *const frame = bytes.data() + position * distance;
        position = position + 1 == amount ? 0 : position + 1;
        return frame;
    }

    std::size_t size;

private:
    std::vector<std::uint8_t> bytes;
    std::size_t distance;
    static constexpr std::size_t amount = 256;
    std::size_t position = 0;
};

std::string mac(unsigned stream) {
    return "0200000000" + std::string(1, "0123456789abcdef"[stream / 16]) + "0123456789abcdef"[stream % 16];
}

void receiveFrames(benchmark::State &state, const Case &test) {
    Frames frames(test);
    sonvex::BufferConfiguration buffer("buffer", bufferSize, signalAmount);
    sonvex::DeviceConfiguration device("device", &buffer, test.format, test.channels, test.samples, 48000);
    avb::AvtpPacketReceiver receiver(2, nullptr);
    for (unsigned stream = 1; stream <= test.streams; ++stream) {
        receiver.addStreamingDevice(mac(stream), device);
    }
    pcap_pkthdr header{};
    for (auto _ : state) {
        header.ts.tv_usec = (header.ts.tv_usec + 125) % 1'000'000; // 8000 frames a second
        header.caplen = header.len = static_cast<bpf_u_int32>(frames.size);
        std::uint8_t *const bytes = frames.next();
        const pcapplus::UntaggedFrame frame(header, bytes);
        receiver.receivePacket(nullptr, &frame.header(), frame.bytes());
        if (test.tagged) {
            std::memmove(bytes, bytes + 4, 12); // for the next round
            std::memcpy(bytes + 12, "\x81\x00\x60\x02", 4);
        }
    }
}

/// The same checks, then each sample of each channel by itself: one conversion, one call and one lock.
void receiveSamples(benchmark::State &state, const Case &test) {
    Frames frames(test);
    sonvex::BufferConfiguration buffer("buffer", bufferSize, signalAmount);
    avb::AvtpPacketChecker checker(mac(1), test.channels, nullptr);
    std::vector<std::unique_ptr<PlainRing>> buffers;
    for (unsigned channel = 0; channel < test.channels; ++channel) {
        buffers.push_back(std::make_unique<PlainRing>(std::to_string(channel), buffer));
    }
    std::mutex frameMutex;
    const unsigned size = test.sampleSize();
    const auto length = static_cast<std::uint32_t>(frames.size);
    for (auto _ : state) {
        const avb::AvtpFrame frame(frames.next(), length, length);
        const std::lock_guard<std::mutex> lock(frameMutex);
        if (!checker.isPacketConform(frame) || !checker.isSequenceNrInOrder(frame) ||
            checker.checkChannelAmount(static_cast<std::int32_t>(test.channels)) == 0 ||
            !checker.checkDataLength(std::uint64_t{size} * test.channels * test.samples)) {
            state.SkipWithError("a good frame was refused");
            return;
        }
        const std::uint8_t *sample = frame.samples(std::uint64_t{size} * test.channels * test.samples);
        for (unsigned position = 0; position < test.samples; ++position) {
            for (unsigned channel = 0; channel < test.channels; ++channel, sample += size) {
                buffers[channel]->writeSample(convertPlainly(sample, size));
            }
        }
    }
}

} // namespace

int main(int argc, char **argv) {
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    constexpr auto int32 = sonvex::SampleFormat::Int32;
    for (const Case &test :
         {Case{2, 6}, {8, 6}, {8, 48}, {60, 6}, {2, 6, int32}, {8, 6, int32}, {8, 48, int32}, {60, 6, int32}}) {
        benchmark::RegisterBenchmark(("reception/receivePacket/" + test.name()).c_str(), receiveFrames, test);
        benchmark::RegisterBenchmark(("reception/writeSample/" + test.name()).c_str(), receiveSamples, test);
    }
    const std::string many = std::to_string(manyStreams) + " streams";
    for (const Case &test : {Case{2, 6}, {8, 6}}) {
        Case further = test;
        benchmark::RegisterBenchmark(("matching/1 stream/" + test.name()).c_str(), receiveFrames, test);
        further.streams = manyStreams;
        benchmark::RegisterBenchmark(("matching/" + many + "/" + test.name()).c_str(), receiveFrames, further);
        further = test;
        benchmark::RegisterBenchmark(("tags/untagged/" + test.name()).c_str(), receiveFrames, test);
        further.tagged = true;
        benchmark::RegisterBenchmark(("tags/tagged/" + test.name()).c_str(), receiveFrames, further);
    }
    return runRatioBenchmarks(argc, argv, {"writeSample", "1 stream", "untagged"});
}
