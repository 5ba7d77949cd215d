// Streams as networks really send them: of any format, at any rate, and told apart by their ID.
#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "avb/AvtpPacketReceiver.h"
#include "core/configuration/DeviceConfiguration.h"
#include "support/Frames.h"
#include "support/LogRecorder.h"
#include "talker/AafFrame.h"

namespace {

using sonvex::FrameRefusal;
using sonvex::SampleFormat;
using support::capture;
using Bytes = std::vector<std::uint8_t>;

constexpr char mac[] = "020000000001";
constexpr common::MacAddress source = {2, 0, 0, 0, 0, 1};

struct Format {
    SampleFormat format;
    const char *name;
    unsigned bytes;
};

constexpr Format formats[] = {{SampleFormat::Int16, "int16", 2},
                              {SampleFormat::Int24, "int24", 3},
                              {SampleFormat::Int32, "int32", 4},
                              {SampleFormat::Float32, "float32", 4}};

talker::AafFrame makeFrame(const std::string &format, unsigned channels, unsigned samples,
                           const std::string &rate = "48000") {
    return {source, source,
            talker::FrameFormat{channels, samples, talker::FrameFormat::parseFormat(format, ""),
                                talker::FrameFormat::parseRate(rate, "")}};
}

Bytes bytesOf(const talker::AafFrame &frame) {
    return {frame.data(), frame.data() + frame.size()};
}

/// What the bytes say, computed in double precision and rounded once.
float valueOf(const std::uint8_t *bytes, const Format &format) {
    std::uint32_t code = 0;
    for (unsigned i = 0; i < format.bytes; ++i) {
        code = code << 8 | bytes[i];
    }
    if (format.format == SampleFormat::Float32) {
        float value = 0;
        std::memcpy(&value, &code, sizeof value);
        return std::isfinite(value) ? value : 0.0F;
    }
    const double full = std::ldexp(1.0, static_cast<int>(8 * format.bytes - 1));
    return static_cast<float>((code < full ? code : code - 2 * full) / full);
}

struct Reception {
    Reception(SampleFormat format, unsigned channels, unsigned samples, unsigned rate = 48000)
        : buffer("buffer", 1000), device("device", &buffer, format, channels, samples, rate), receiver(2, nullptr) {
        receiver.addStreamingDevice(mac, device, facts);
    }

    sonvex::BufferConfiguration buffer;
    sonvex::DeviceConfiguration device;
    std::shared_ptr<facts::StreamFacts> facts = std::make_shared<facts::StreamFacts>();
    avb::AvtpPacketReceiver receiver;
};

TEST(StreamFormats, giveEachSampleAsItsNearestFloat) {
    std::mt19937 random(1); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same bytes at each run
    for (const Format &format : formats) {
        for (const unsigned configured : {7U, 0U}) {
            SCOPED_TRACE(format.name + std::to_string(configured));
            Reception reception(format.format, 3, configured);
            std::uint64_t nonFinite = 0;
            for (std::uint8_t sequence = 0; sequence < 40; ++sequence) {
                const unsigned channels = 1 + sequence % 3;
                const unsigned samples = configured == 0 ? 1 + sequence : configured;
                talker::AafFrame frame = makeFrame(format.name, channels, samples);
                frame.setSequence(sequence);
                Bytes bytes = bytesOf(frame);
                for (std::size_t i = talker::AafFrame::headerSize; i < bytes.size(); ++i) {
                    bytes[i] = static_cast<std::uint8_t>(random());
                }
                if (format.format == SampleFormat::Float32) {
                    for (const float special : {std::numeric_limits<float>::infinity(), std::nanf("")}) {
                        std::uint32_t code = 0;
                        std::memcpy(&code, &special, sizeof code);
                        for (unsigned i = 0; i < 4; ++i) {
                            bytes[bytes.size() - 4 + i] = static_cast<std::uint8_t>(code >> (24 - 8 * i));
                        }
                    }
                }
                capture(reception.receiver, bytes);
                for (unsigned channel = 0; channel < channels; ++channel) {
                    const auto values = reception.receiver.getAudioBuffer(mac, channel)->fetchLatestSamples(samples);
                    for (unsigned sample = 0; sample < samples; ++sample) {
                        const std::uint8_t *at = bytes.data() + talker::AafFrame::headerSize +
                                                 std::size_t{sample * channels + channel} * format.bytes;
                        ASSERT_EQ(values[sample], valueOf(at, format)) << channel << ' ' << sample;
                        if (format.format == SampleFormat::Float32 && (at[0] & 0x7F) == 0x7F && (at[1] & 0x80) != 0) {
                            ++nonFinite;
                        }
                    }
                }
            }
            EXPECT_EQ(reception.facts->getFramesTaken(), 40U);
            EXPECT_EQ(reception.facts->getNonFiniteSamples(), nonFinite);
            EXPECT_EQ(nonFinite > 0, format.format == SampleFormat::Float32);
        }
    }
}

TEST(StreamFormats, refuseFramesOfAnotherOneAndSaySoOnceForEachChange) {
    const std::string context = "W avb::AvtpPacketBoundaryChecker::checkFormat \"020000000001\" The AVTP packets have ";
    const auto format = [&](int code) {
        return context +
               "another sample format!  Expected format code:  2 , AVTP packet format code:  " + std::to_string(code);
    };
    const auto rate = [&](int hertz, int code) {
        return context + "another sample rate!  Expected sample rate:  48000 , AVTP packet sample rate:  " +
               std::to_string(hertz) + "  (code  " + std::to_string(code) + " )";
    };
    Reception reception(SampleFormat::Int32, 2, 6);
    std::uint8_t sequence = 0;
    const support::LogRecorder log;
    const auto send = [&](int formatCode, int rateCode, unsigned upperChannelBits = 0) {
        Bytes bytes = bytesOf(makeFrame("int32", 2, 6));
        bytes[16] = sequence++;
        bytes[30] = static_cast<std::uint8_t>(formatCode);
        bytes[31] = static_cast<std::uint8_t>(rateCode << 4 | static_cast<int>(upperChannelBits));
        capture(reception.receiver, bytes);
    };
    send(2, 5);
    send(2, 0); // as the user says
    for (int i = 0; i < 3; ++i) {
        send(1, 5); // floats are as long
    }
    send(4, 5);
    send(1, 5);
    send(2, 5);
    send(1, 5);
    for (int i = 0; i < 2; ++i) {
        send(2, 7);
    }
    send(2, 15);
    send(2, 5);
    EXPECT_EQ(log.warnings(),
              (std::vector<std::string>{format(1), format(4), format(1), format(1), rate(96000, 7), rate(0, 15)}));
    EXPECT_EQ(reception.facts->getFramesTaken(), 4U);
    EXPECT_EQ(reception.facts->getFramesRefused(FrameRefusal::Format), 6U);
    EXPECT_EQ(reception.facts->getFramesRefused(FrameRefusal::SampleRate), 3U);
    send(2, 5, 1); // 258 channels
    EXPECT_EQ(reception.facts->getChannelAmount(), 258);
    EXPECT_EQ(reception.facts->getFramesRefused(FrameRefusal::ChannelAmount), 1U);
    EXPECT_EQ(reception.facts->getFramesRefused(), 10U);
}

TEST(StreamFormats, takeEachLengthOfWholeSamplesWhereNoneIsConfigured) {
    Reception reception(SampleFormat::Int24, 2, 0, 96000);
    std::uint8_t sequence = 0;
    for (const unsigned length : {0U, 5U, 6U, 7U, 11U, 12U}) {
        talker::AafFrame frame = makeFrame("int24", 2, 2, "96000");
        frame.setDataLength(static_cast<std::uint16_t>(length));
        frame.setSequence(sequence++);
        capture(reception.receiver, bytesOf(frame));
    }
    EXPECT_EQ(reception.facts->getFramesTaken(), 2U);
    EXPECT_EQ(reception.facts->getFramesRefused(FrameRefusal::DataLength), 4U);
    EXPECT_EQ(reception.facts->getSampleRate(), 96000);
    EXPECT_EQ(reception.facts->getBitDepth(), 24);
    EXPECT_EQ(reception.receiver.getAudioBuffer(mac, 0)->getSampleRate(), 96000U);
}

TEST(StreamIds, tellStreamsOfOneSourceApartWhateverTheirAddressSays) {
    sonvex::BufferConfiguration buffer("buffer", 100);
    sonvex::DeviceConfiguration device("device", &buffer, SampleFormat::Int16, 1, 1, 48000);
    avb::AvtpPacketReceiver receiver(2, nullptr);
    std::vector<sonvex::StreamId> ids;
    std::vector<std::shared_ptr<facts::StreamFacts>> facts;
    const auto add = [&](const std::string &key, const std::optional<sonvex::StreamId> &id) {
        facts.push_back(std::make_shared<facts::StreamFacts>());
        receiver.addStreamingDevice(key, device, facts.back(), id);
    };
    for (int i = 0; i < 40; ++i) {
        ids.emplace_back(
            sonvex::StreamId::Bytes{2, 0, 0, 0, 0, 1, static_cast<std::uint8_t>(i / 4), static_cast<std::uint8_t>(i)});
        add(ids.back().toString(), ids.back());
    }
    add(mac, {}); // hears them all, as a stream with a gap in nearly every frame
    const auto send = [&](std::size_t number, std::uint8_t sequence, bool valid, std::uint8_t lastByte) {
        talker::AafFrame frame = makeFrame("int16", 1, 1);
        frame.setStreamId(ids[number].getBytes());
        frame.setSequence(sequence);
        frame.setStreamValid(valid);
        frame.setSample(0, 0, static_cast<double>(number) / 64);
        Bytes bytes = bytesOf(frame);
        bytes[11] = lastByte; // of the source
        capture(receiver, bytes);
    };
    for (std::uint8_t sequence = 250; sequence != 10; ++sequence) {
        for (std::size_t number = 0; number < ids.size(); ++number) {
            send(number, static_cast<std::uint8_t>(sequence + number), true,
                 sequence == 255 ? std::uint8_t{9} : std::uint8_t{1});
        }
    }
    send(0, 10, false, 1);
    for (std::size_t number = 0; number < ids.size(); ++number) {
        SCOPED_TRACE(number);
        EXPECT_EQ(facts[number]->getFramesTaken(), 16U);
        EXPECT_EQ(facts[number]->getGaps(), 0U);
        EXPECT_EQ(facts[number]->getStreamId(), ids[number].toString());
        EXPECT_EQ(receiver.getAudioBuffer(ids[number].toString(), 0)->fetchLatestSamples(1).front(),
                  static_cast<float>(number) / 64);
    }
    EXPECT_EQ(facts[40]->getFramesTaken() + facts[40]->getGaps(), 15U * 40 + 1);
    EXPECT_EQ(facts[40]->getStreamId(), ids.back().toString()) << "the newest valid one";
}

} // namespace
