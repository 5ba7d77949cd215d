#include <atomic>
#include <memory>
#include <thread>

#include <gtest/gtest.h>

#include <sonvex/exceptions.h>

#include "avb/AvbAudioBuffer.h"
#include "core/configuration/StreamConfiguration.h"
#include "engine/streaming/NetworkReceiver.h"
#include "engine/streaming/StreamingEngine.h"
#include "support/Adapters.h"
#include "support/Frames.h"
#include "support/LogRecorder.h"
#include "support/NetworkNamespace.h"
#include "support/refusalOf.h"
#include "support/waitFor.h"

namespace {

using engine::streaming::StreamingEngine;
using support::makeFrame;
using support::refusalOf;
using support::waitFor;

constexpr char context[] = "engine::streaming::StreamingEngine::";

/// A stream's configurations, of 2 channels of 6 samples if nothing else is said.
struct Stream {
    explicit Stream(const std::string &mac, const pcapplus::PcapDeviceInfo &adapter, unsigned channels = 2)
        : adapter(adapter), buffer("buffer", 48000), device("device", &buffer, 2, channels, 6),
          stream("stream of " + mac, mac, &this->adapter, &device) {}
    pcapplus::PcapDeviceInfo adapter;
    sonvex::BufferConfiguration buffer;
    sonvex::DeviceConfiguration device;
    sonvex::StreamConfiguration stream;
};

/// Code n of a ramp over all samples of a channel.
std::vector<std::uint8_t> rampFrame(const std::string &mac, unsigned number, unsigned channels = 2) {
    return makeFrame(mac, static_cast<std::uint8_t>(number), channels, 6, [number](unsigned sample, unsigned channel) {
        return static_cast<std::int16_t>(number * 6 + sample + 1 + channel * 1000);
    });
}

TEST(StreamingEngine, receivesTheStreamsOfAnAdapterSampleForSample) {
    talker::RawSocket socket("lo");
    Stream first("020000000001", support::adapter("lo"));
    Stream second("020000000002", support::adapter("lo"), 8);
    StreamingEngine engine;
    std::atomic<int> messages{0};
    QObject::connect(&engine, &StreamingEngine::message, &engine, [&] { ++messages; });
    engine.addRemoteStreamReceiver(first.stream);
    const support::LogRecorder log;
    engine.addRemoteStreamReceiver(second.stream);
    const std::string lo = "\"lo\"";
    const std::string description = "\"" + first.adapter.getSystemDeviceDescription() + "\"";
    EXPECT_EQ(log.lines().front(), std::string("D ") + context +
                                       "addRemoteStreamReceiver Network receiver for network device ' " + description +
                                       " ' ( " + lo + " ) already available, the device stream can be added");
    EXPECT_EQ(*(log.lines().end() - 2),
              std::string("D ") + context +
                  "addNetworkStreamToNetworkReceiver Network stream successfully added by configuration ' \"stream of "
                  "020000000002\" '' for streaming device : \"020000000002\"");
    EXPECT_EQ(log.lines().back(), std::string("D ") + context + "addNetworkStreamToNetworkReceiver Receiver is:  " +
                                      description + " ' ( " + lo + " )");

    engine::streaming::NetworkReceiverHandle &handle = *engine.getNetworkDeviceHandle("lo");
    EXPECT_FALSE(handle.isRunning());
    handle.start();
    EXPECT_TRUE(handle.isRunning());
    for (unsigned number = 0; number < 500; ++number) {
        support::send(socket, rampFrame("020000000001", number));
        support::send(socket, rampFrame("020000000002", number, 8));
    }
    for (const auto &[mac, channel] : std::vector<std::pair<const char *, unsigned>>{
             {"020000000001", 0}, {"020000000001", 1}, {"020000000002", 0}, {"020000000002", 7}}) {
        avb::AvbAudioBuffer *buffer = engine.getAudioBuffer(mac, channel);
        const auto expected = [channel = channel](std::size_t sample) {
            return static_cast<float>((static_cast<double>(sample) + 1 + channel * 1000) / 32768);
        };
        ASSERT_TRUE(waitFor([&] { return buffer->fetchLatestSamples(1).front() == expected(2999); })) << mac << channel;
        const std::vector<float> samples = buffer->fetchLatestSamples(3000);
        for (std::size_t sample = 0; sample < samples.size(); ++sample) {
            ASSERT_EQ(samples[sample], expected(sample)) << mac << channel << " " << sample;
        }
    }
    // One announcement of each stream, relayed once per stream of the receiver.
    EXPECT_TRUE(waitFor([&] { return messages >= 4; }));
    EXPECT_EQ(messages, 4);
    EXPECT_EQ(log.warnings(), std::vector<std::string>{});
    handle.stop();
    EXPECT_FALSE(handle.isRunning());
    EXPECT_EQ(handle.toString(), "NetworkReceiverHandle\n\tControlled Network Receiver UID: lo");
}

TEST(StreamingEngine, addsAStreamWhileFramesArrive) {
    talker::RawSocket socket("lo");
    Stream first("020000000001", support::adapter("lo"));
    std::vector<std::unique_ptr<Stream>> streams; // they outlive the engine, whose capture reads them to its end
    StreamingEngine engine;
    engine.addRemoteStreamReceiver(first.stream);
    engine.getNetworkDeviceHandle("lo")->start();
    std::atomic<bool> ended{false};
    std::thread talker([&] {
        for (unsigned number = 0; !ended; ++number) {
            support::send(socket, rampFrame("020000000001", number));
            support::send(socket, rampFrame("030000000009", number));
        }
    });
    const support::LogRecorder log;
    for (int number = 0; number < 10; ++number) {
        streams.push_back(std::make_unique<Stream>("03000000000" + std::to_string(number), first.adapter));
        engine.addRemoteStreamReceiver(streams.back()->stream);
    }
    avb::AvbAudioBuffer *late = engine.getAudioBuffer("030000000009", 0);
    EXPECT_TRUE(waitFor([&] { return late->fetchLatestSamples(1).front() != 0; }));
    ended = true;
    talker.join();
    EXPECT_EQ(log.count("unexpected"), 0);
}

TEST(StreamingEngine, refusesAnAdapterThatCannotBeOpenedAndGoesOn) {
    Stream lost("020000000003", support::missingAdapter());
    StreamingEngine engine;
    const support::LogRecorder log;
    const auto refusal =
        refusalOf<exceptions::InstanceNotCreateable>([&] { engine.addRemoteStreamReceiver(lost.stream); });
    const std::string text = "Packet receiver cannot be initialized by configuration 'stream of 020000000003' for "
                             "streaming device: 020000000003! Wrong configuration passed";
    EXPECT_EQ(refusal.what(), text);
    const auto warnings = log.warnings();
    EXPECT_EQ(*(warnings.end() - 2), std::string("W ") + context + "initiateNetworkReceiver \"" + text + "\"");
    EXPECT_EQ(warnings.back(), std::string("W ") + context +
                                   "initiateNetworkReceiver Cannot be registered on:  \"A missing adapter\" ' ( "
                                   "\"missing0\" )");
    EXPECT_THROW(engine.getNetworkDeviceHandle("missing0"), exceptions::ResourceNotAvailable);
    Stream good("020000000003", support::adapter("lo"));
    engine.addRemoteStreamReceiver(good.stream);
    EXPECT_NE(engine.getAudioBuffer("020000000003", 1), nullptr);
}

TEST(StreamingEngine, refusesAStreamASecondTimeOnWhateverAdapter) {
    support::makeVethPair("twin0", "twin1");
    Stream first("020000000004", support::adapter("lo"));
    Stream again("020000000004", support::adapter("twin0"));
    StreamingEngine engine;
    engine.addRemoteStreamReceiver(first.stream);
    avb::AvbAudioBuffer *buffer = engine.getAudioBuffer("020000000004", 0);
    for (sonvex::StreamConfiguration *stream : {&first.stream, &again.stream}) {
        const support::LogRecorder log;
        const auto refusal =
            refusalOf<exceptions::StreamingDeviceAlreadyExists>([&] { engine.addRemoteStreamReceiver(*stream); });
        const std::string adapter = stream->getNetworkDeviceInfo()->getSystemDeviceName();
        EXPECT_STREQ(refusal.what(), "Streaming device already exists");
        EXPECT_EQ(refusal.getNetworkDeviceName(), adapter);
        EXPECT_STREQ(refusal.getStreamDeviceMacAddress(), "020000000004");
        EXPECT_EQ(log.warnings(),
                  std::vector<std::string>{std::string("W ") + context +
                                           "addNetworkStreamToNetworkReceiver \"Streaming device already exists\" :  "
                                           "\"020000000004\" ' already registered to ' \"" +
                                           stream->getNetworkDeviceInfo()->getSystemDeviceDescription() + "\" ' ( \"" +
                                           adapter + "\" ). No action will be performed!"});
    }
    EXPECT_EQ(engine.getAudioBuffer("020000000004", 0), buffer);
    EXPECT_EQ(engine.getNetworkDeviceHandle("twin0")->getUid(), "twin0"); // the second adapter's receiver stays
    support::removeInterface("twin0");
}

TEST(StreamingEngine, keepsTheReceiverOfADeviceWithoutChannels) {
    Stream empty("020000000005", support::adapter("lo"), 0);
    StreamingEngine engine;
    EXPECT_THROW(engine.addRemoteStreamReceiver(empty.stream), exceptions::InstanceNotCreateable);
    EXPECT_NO_THROW(engine.getNetworkDeviceHandle("lo"));
    EXPECT_THROW(engine.getAudioBuffer("020000000005", 0), exceptions::ResourceNotAvailable);
}

TEST(StreamingEngine, refusesBuffersAndHandlesItDoesNotHave) {
    StreamingEngine engine;
    const support::LogRecorder log;
    const std::string buffer = "The requested audio buffer for streaming device MAC '020000000006' is NOT available! "
                               "The device stream is not received by the engine";
    const std::string handle = "The requested network receiver handle for network receiver UID 'lo' is NOT available! "
                               "No network receiver for the given ID available by this engine";
    EXPECT_EQ(refusalOf<exceptions::ResourceNotAvailable>([&] { engine.getAudioBuffer("020000000006", 0); }).what(),
              buffer);
    EXPECT_EQ(refusalOf<exceptions::ResourceNotAvailable>([&] { engine.getNetworkDeviceHandle("lo"); }).what(), handle);
    engine.stop();
    EXPECT_EQ(log.lines(),
              (std::vector<std::string>{std::string("W ") + context + "getAudioBuffer \"" + buffer + "\"",
                                        std::string("W ") + context + "getNetworkDeviceHandle \"" + handle + "\"",
                                        std::string("D ") + context + "stop Network receivers stopped!"}));
}

TEST(StreamingEngine, endsItsReceiversInOrder) {
    const support::LogRecorder log;
    Stream stream("020000000007", support::adapter("lo"));
    auto engine = std::make_unique<StreamingEngine>();
    engine->addRemoteStreamReceiver(stream.stream);
    const auto listens = [&](int times) { return waitFor([&] { return log.count("PCAP listener active") == times; }); };
    engine->getNetworkDeviceHandle("lo")->start();
    ASSERT_TRUE(listens(1)); // a loop that has not begun is withdrawn without a word
    engine->stop();
    engine->stop();
    EXPECT_EQ(log.count("W pcapplus::PcapPacketSniffer::stop"), 0);
    engine->getNetworkDeviceHandle("lo")->start(); // may follow a stop at once
    ASSERT_TRUE(listens(2));
    engine.reset();
    std::vector<std::string> order;
    for (const std::string &line : log.lines()) {
        for (const char *step : {"Packet receiver forced to end", "Worker thread ended", "PCAP listener INACTIVE",
                                 "Release PCAP and free memory", "~AvtpPacketReceiver", "~AvbAudioBuffer",
                                 "~AvtpPacketChecker", "Network receiver cleared!", "Cleanup completed!"}) {
            if (line.find(step) != std::string::npos) {
                order.emplace_back(step);
            }
        }
    }
    EXPECT_EQ(order,
              (std::vector<std::string>{"PCAP listener INACTIVE", "Packet receiver forced to end",
                                        "Worker thread ended", "PCAP listener INACTIVE", "Release PCAP and free memory",
                                        "~AvtpPacketReceiver", "~AvbAudioBuffer", "~AvbAudioBuffer",
                                        "~AvtpPacketChecker", "Network receiver cleared!", "Cleanup completed!"}));
}

TEST(NetworkReceiver, printsItsPartsOneAfterTheOther) {
    const auto lo = support::adapter("lo");
    const engine::streaming::NetworkReceiver receiver(lo, 2, "", std::make_shared<engine::Run>());
    const std::string number = std::to_string(lo.getSystemDeviceNumber());
    EXPECT_EQ(receiver.toString(),
              "NetworkReceiver: AvtpPacketReceiver (eth" + number +
                  ")NetworkReceiverHandle\n\tControlled Network Receiver UID: loPcapPacketSniffer (eth" + number +
                  ") configured on device: " + number + "\nBound to packet receiver: AvtpPacketReceiver (eth" + number +
                  ")\nFilter set: None\nRunning: 0\nAdapter details:\n\t" + lo.toString() + "[AvtpPacketReceiver (eth" +
                  number + ")]");
}

} // namespace
