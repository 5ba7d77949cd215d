#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include <sonvex/exceptions.h>

#include "avb/AvtpPacketReceiver.h"
#include "core/configuration/DeviceConfiguration.h"
#include "support/FailingCall.h"
#include "support/Frames.h"
#include "support/LogRecorder.h"
#include "support/refusalOf.h"

namespace {

using support::capture;
using support::makeFrame;

constexpr char mac[] = "020000000001";
constexpr char otherMac[] = "020000000002";
constexpr std::uint8_t subtype = 2;

/// Differs for all samples and channels of neighbouring frames.
std::int16_t code(unsigned sample, unsigned channel, int frame = 0) {
    return static_cast<std::int16_t>((static_cast<int>(sample) - 3) * 1021 + static_cast<int>(channel) * 37 - frame);
}

support::CodeSource codesOf(int frame) {
    return [frame](unsigned sample, unsigned channel) { return code(sample, channel, frame); };
}

struct Reception {
    explicit Reception(unsigned channels = 2)
        : buffer("buffer", 1000), device("device", &buffer, 2, channels, 6), receiver(subtype, nullptr) {
        receiver.addStreamingDevice(mac, device);
    }

    std::vector<float> channel(unsigned number, std::size_t amount) {
        return receiver.getAudioBuffer(mac, number)->fetchLatestSamples(amount);
    }

    sonvex::BufferConfiguration buffer;
    sonvex::DeviceConfiguration device;
    avb::AvtpPacketReceiver receiver;
};

TEST(PacketReceiver, allocatesAndLogsNothingForAGoodFrame) {
    Reception reception(8);
    std::vector<std::vector<std::uint8_t>> frames;
    for (int frame = 0; frame < 10; ++frame) {
        frames.push_back(makeFrame(mac, static_cast<std::uint8_t>(frame), 8, 6, codesOf(frame)));
        frames.back().resize(frames.back().size() + 10); // the adapter's padding
    }
    capture(reception.receiver, frames.front()); // announces the channels
    const support::LogRecorder log;
    const std::size_t before = support::allocationsOfThisThread();
    for (std::size_t frame = 1; frame < frames.size(); ++frame) {
        pcap_pkthdr header{};
        header.caplen = header.len = static_cast<bpf_u_int32>(frames[frame].size());
        reception.receiver.receivePacket(nullptr, &header, frames[frame].data());
    }
    EXPECT_EQ(support::allocationsOfThisThread(), before);
    EXPECT_TRUE(log.lines().empty());
    EXPECT_EQ(reception.channel(7, 1).front(), static_cast<float>(code(5, 7, 9) / 32768.0));
}

TEST(PacketReceiver, noticesThatTimeGoesOnThoughAllFramesHaveOneStamp) {
    Reception reception;
    const auto facts = std::make_shared<facts::StreamFacts>();
    reception.receiver.addStreamingDevice(otherMac, reception.device, facts);
    capture(reception.receiver, makeFrame(otherMac, 0, 2, 6, codesOf(0)));
    const std::int64_t first = facts->getSteadyTime();
    for (std::uint8_t sequence = 1; sequence < 100; ++sequence) {
        capture(reception.receiver, makeFrame(otherMac, sequence, 2, 6, codesOf(0)));
    }
    EXPECT_GT(facts->getSteadyTime(), first);
}

TEST(PacketReceiver, saysWhatItRefuses) {
    const std::string context = "W avb::AvtpPacketReceiver::";
    const std::string name = " \"AvtpPacketReceiver (unbound)\" ";
    const std::string missed = context + "extractAvtpPacketData" + name + "Packets missed:  1";
    const std::string length = context + "performPreDataExtractionChecks" + name +
                               "The transferred AVTP stream data length is unexpected!  Packet audio data won't be "
                               "extracted for device:  \"020000000001\"";
    const auto channels = [](const char *amount) {
        return "W avb::AvtpPacketBoundaryChecker::checkChannelAmount \"020000000001\" The amount of AVTP packet "
               "channels is invalid or exceeded:  Maximum allowed channel amount:  2 , AVTP packet amount:  " +
               std::string(amount);
    };
    struct RefusedFrame {
        std::vector<std::pair<std::size_t, std::uint8_t>> changes; ///< bytes of a good frame, 2 channels of 6 samples
        std::size_t captured;
        std::vector<std::string> lines;
    };
    const std::vector<RefusedFrame> refusedFrames = {{{{14, 3}}, 62, {}}, // another subtype
                                                     {{{11, 2}}, 62, {}}, // another address
                                                     {{{16, 9}}, 62, {missed}},
                                                     {{{32, 0}}, 62, {channels("0"), length}},
                                                     {{{32, 0}, {35, 0}}, 62, {channels("0")}},
                                                     {{{32, 3}, {35, 36}}, 62, {channels("3"), length}},
                                                     {{{35, 23}}, 62, {length}},
                                                     {{{35, 25}}, 62, {length}},
                                                     {{{34, 0xFF}, {35, 0xFF}}, 62, {length}},
                                                     {{}, 61, {length}},
                                                     {{}, 36, {length}}};
    for (std::size_t row = 0; row < refusedFrames.size(); ++row) {
        SCOPED_TRACE(row);
        Reception reception;
        capture(reception.receiver, makeFrame(mac, 0, 2, 6, codesOf(0)));
        auto frame = makeFrame(mac, 1, 2, 6, codesOf(1));
        for (const auto &[offset, value] : refusedFrames[row].changes) {
            frame[offset] = value;
        }
        frame.resize(refusedFrames[row].captured);
        const support::LogRecorder log;
        capture(reception.receiver, frame, 62);
        EXPECT_EQ(log.warnings(), refusedFrames[row].lines);
        EXPECT_EQ(reception.channel(1, 1).front(), static_cast<float>(code(5, 1) / 32768.0));
    }
    const support::LogRecorder log; // of what no frame leads to
    avb::AvtpPacketReceiver receiver(subtype, nullptr);
    const auto frame = makeFrame(mac, 0, 2, 6, codesOf(0));
    receiver.writeAudioSamplesToBuffer(avb::AvtpFrame(frame.data(), 62, 62), mac);
    EXPECT_EQ(receiver.performPreDataExtractionChecks(mac, 2, 6, 2), 0);
    EXPECT_EQ(log.warnings(),
              (std::vector<std::string>{
                  context + "writeAudioSamplesToBuffer" + name +
                      "Cannot store samples to buffer:  \"No buffer available for the specified device MAC address: "
                      "020000000001\"  No buffer exists for the given device.",
                  context + "performPreDataExtractionChecks" + name +
                      "The amount of AVTP packet requirements cannot be checked! The required  packet data and "
                      "boundary check instance is not available for device:  \"020000000001\""}));
}

TEST(PacketReceiver, refusesStreamsAndChannelsItCannotHave) {
    using support::expectRefusal;
    Reception reception;
    avb::AvtpPacketReceiver &receiver = reception.receiver;
    const std::string adding = "avb::AvtpPacketReceiver::addStreamingDevice \"AvtpPacketReceiver (unbound)\"";
    const std::string asking = "avb::AvtpPacketReceiver::getAudioBuffer \"AvtpPacketReceiver (unbound)\"";
    avb::AvbAudioBuffer *first = receiver.getAudioBuffer(mac, 1);
    support::LogRecorder log;
    expectRefusal<exceptions::InstanceAlreadyExists>(
        log, [&] { receiver.addStreamingDevice(mac, reception.device); }, adding,
        "Buffer already available for the specified device MAC address: 020000000001! Device won't be added!");
    EXPECT_EQ(receiver.getAudioBuffer(mac, 1), first);
    sonvex::DeviceConfiguration empty("hollow", &reception.buffer, 2, 0, 6);
    expectRefusal<exceptions::InstanceNotCreateable>(
        log, [&] { receiver.addStreamingDevice(otherMac, empty); }, adding,
        "Invalid channel count '0' given for device by 'hollow' for: 020000000002 Device not initialized!");
    expectRefusal<exceptions::ResourceNotAvailable>(
        log, [&] { receiver.getAudioBuffer(otherMac, 0); }, asking,
        "No buffer available for the specified device MAC address: 020000000002");
    for (const unsigned channel : {2U, 4000000000U}) {
        expectRefusal<exceptions::ResourceNotAvailable>(
            log, [&] { receiver.getAudioBuffer(mac, channel); }, asking,
            "No buffer available for the specified channel number '" + std::to_string(channel) +
                "' at streaming device: 020000000001");
    }
    receiver.addStreamingDevice(otherMac, reception.device); // a refusal left nothing behind
}

TEST(PacketReceiver, takesTheAdaptersNumberOnceAndLogsItsLife) {
    const support::LogRecorder log;
    {
        avb::AvtpPacketReceiver receiver(subtype, nullptr);
        EXPECT_TRUE(receiver.bindToDevice(3));
        EXPECT_FALSE(receiver.bindToDevice(4));
        EXPECT_EQ(receiver.getReceiverName(), "AvtpPacketReceiver (eth3)");
        EXPECT_EQ(receiver.toString(), "[AvtpPacketReceiver (eth3)]");
        int finished = 0;
        QObject::connect(&receiver, &threading::Worker::finished, [&] { ++finished; });
        receiver.progress();
        receiver.end();
        EXPECT_EQ(finished, 1);
    }
    const std::string context = "D avb::AvtpPacketReceiver::";
    EXPECT_EQ(log.lines(), (std::vector<std::string>{
                               "D threading::Worker::Worker \"AvtpPacketReceiver (unbound)\" Initialized",
                               "D avb::AvbToFloatSampleConverter::AvbToFloatSampleConverter Initialized!",
                               context + "AvtpPacketReceiver \"AvtpPacketReceiver (unbound)\" Initialized",
                               context + "progress \"AvtpPacketReceiver (eth3)\" Packet receiver progress started",
                               context + "end \"AvtpPacketReceiver (eth3)\" Packet receiver forced to end",
                               context + "~AvtpPacketReceiver \"AvtpPacketReceiver (eth3)\" CLEARED!",
                               "D threading::Worker::~Worker \"AvtpPacketReceiver (eth3)\" DELETED"}));
}

TEST(PacketReceiver, takesStreamsOfAnyPacketLengthInAnyOrder) {
    constexpr unsigned longest = 16383; // of two channels: no data length says more
    for (const auto &lengths : {std::pair{6U, longest}, {longest, 6U}}) {
        sonvex::BufferConfiguration buffer("buffer", longest);
        sonvex::DeviceConfiguration first("first", &buffer, 2, 2, lengths.first);
        sonvex::DeviceConfiguration second("second", &buffer, 2, 2, lengths.second);
        avb::AvtpPacketReceiver receiver(subtype, nullptr);
        receiver.addStreamingDevice(mac, first);
        receiver.addStreamingDevice(otherMac, second);
        for (const auto &[source, length] : {std::pair{mac, lengths.first}, {otherMac, lengths.second}}) {
            capture(receiver, makeFrame(source, 0, 2, length, codesOf(0)));
            const auto samples = receiver.getAudioBuffer(source, 1)->fetchLatestSamples(length);
            for (unsigned sample = 0; sample < length; ++sample) {
                ASSERT_EQ(samples[sample], static_cast<float>(code(sample, 1) / 32768.0)) << length << ": " << sample;
            }
        }
    }
}

TEST(PacketReceiver, keepsTheFramesOfSeveralCapturesApartWhileStreamsAreAdded) {
    constexpr unsigned length = 4000;
    sonvex::BufferConfiguration buffer("buffer", length);
    sonvex::DeviceConfiguration device("device", &buffer, 2, 1, length);
    avb::AvtpPacketReceiver receiver(subtype, nullptr);
    receiver.addStreamingDevice(mac, device);
    receiver.addStreamingDevice(otherMac, device);
    const support::LogRecorder log;
    std::atomic<int> ready{0};
    std::atomic<int> captured{0};
    std::atomic<int> mixed{0};
    std::vector<std::thread> captures;
    for (const char *source : {mac, otherMac}) {
        captures.emplace_back([&, source] {
            const std::int16_t own = source == mac ? 1 : -1;
            auto frame = makeFrame(source, 0, 1, length, [own](unsigned, unsigned) { return own; });
            const std::vector<float> expected(length, static_cast<float>(own / 32768.0));
            const avb::AvbAudioBuffer &samples = *receiver.getAudioBuffer(source, 0);
            for (++ready; ready < 2;) {
            }
            for (int number = 0; number < 2000; ++number) {
                frame[16] = static_cast<std::uint8_t>(number);
                capture(receiver, frame);
                mixed += samples.fetchLatestSamples(length) == expected ? 0 : 1;
                ++captured;
            }
        });
    }
    for (int number = 0; number < 50; ++number) {
        for (; captured < 80 * number;) { // all along the captures
            std::this_thread::yield();
        }
        receiver.addStreamingDevice("0300000000" + std::to_string(10 + number), device);
    }
    for (std::thread &thread : captures) {
        thread.join();
    }
    EXPECT_EQ(mixed, 0);
    EXPECT_EQ(log.count("Packets missed"), 0);
}

} // namespace
