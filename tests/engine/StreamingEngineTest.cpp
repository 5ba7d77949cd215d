#include <atomic>
#include <memory>

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
using exceptions::InstanceNotCreateable;
using exceptions::ResourceNotAvailable;
using support::expectRefusal;
using support::refusalOf;
using support::waitFor;

using Lines = std::vector<std::string>;

const std::string context = "engine::streaming::StreamingEngine::";

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

TEST(StreamingEngine, addsAStreamToTheReceiverOfItsAdapter) {
    talker::RawSocket socket("lo");
    Stream first("020000000001", support::adapter("lo"));
    Stream second("020000000002", support::adapter("lo"));
    StreamingEngine engine;
    std::atomic<int> messages{0};
    QObject::connect(&engine, &StreamingEngine::message, &engine, [&] { ++messages; });
    engine.addRemoteStreamReceiver(first.stream);
    const support::LogRecorder log;
    engine.addRemoteStreamReceiver(second.stream);
    const std::string lo = "\"" + first.adapter.getSystemDeviceDescription() + "\" ' ( \"lo\" )";
    const Lines lines = {"D " + context + "addRemoteStreamReceiver Network receiver for network device ' " + lo +
                             " already available, the device stream can be added",
                         "D " + context +
                             "addNetworkStreamToNetworkReceiver Network stream successfully added by configuration ' "
                             "\"stream of 020000000002\" '' for streaming device : \"020000000002\"",
                         "D " + context + "addNetworkStreamToNetworkReceiver Receiver is:  " + lo};
    EXPECT_EQ(log.stepsOf(lines), lines); // the receiver's thread may log beside it that it has begun

    engine::streaming::NetworkReceiverHandle &handle = *engine.getNetworkDeviceHandle("lo");
    EXPECT_FALSE(handle.isRunning());
    handle.start();
    EXPECT_TRUE(handle.isRunning());
    for (const char *mac : {"020000000001", "020000000002"}) {
        support::send(socket, support::makeFrame(mac, 0, 2, 6, [](unsigned, unsigned) { return 5; }));
        avb::AvbAudioBuffer *buffer = engine.getAudioBuffer(mac, 1);
        EXPECT_TRUE(waitFor([&] { return buffer->fetchLatestSamples(1).front() != 0; })) << mac;
    }
    // One announcement of each stream, relayed once per stream of the receiver.
    EXPECT_TRUE(waitFor([&] { return messages >= 4; }));
    EXPECT_EQ(messages, 4);
    EXPECT_EQ(log.warnings(), Lines{});
    handle.stop();
    EXPECT_FALSE(handle.isRunning());
    EXPECT_EQ(handle.toString(), "NetworkReceiverHandle\n\tControlled Network Receiver UID: lo");
}

TEST(StreamingEngine, refusesWhatItCannotHaveAndKeepsWhatItHas) {
    support::makeVethPair("twin0", "twin1");
    const std::string mac = "020000000003";
    Stream lost(mac, support::missingAdapter());
    Stream empty(mac, support::adapter("lo"), 0);
    Stream good(mac, support::adapter("lo"));
    Stream again(mac, support::adapter("twin0"));
    StreamingEngine engine;
    support::LogRecorder log;
    const std::string noBuffer = "The requested audio buffer for streaming device MAC '020000000003' is NOT available! "
                                 "The device stream is not received by the engine";
    const std::string noHandle = "The requested network receiver handle for network receiver UID 'lo' is NOT "
                                 "available! No network receiver for the given ID available by this engine";
    expectRefusal<ResourceNotAvailable>(
        log, [&] { engine.getAudioBuffer(mac, 0); }, context + "getAudioBuffer", noBuffer);
    expectRefusal<ResourceNotAvailable>(
        log, [&] { engine.getNetworkDeviceHandle("lo"); }, context + "getNetworkDeviceHandle", noHandle);
    log.clear();
    engine.stop();
    EXPECT_EQ(log.lines(), Lines{"D " + context + "stop Network receivers stopped!"});

    const std::string text = "Packet receiver cannot be initialized by configuration 'stream of 020000000003' for "
                             "streaming device: 020000000003! Wrong configuration passed";
    EXPECT_EQ(text, refusalOf<InstanceNotCreateable>([&] { engine.addRemoteStreamReceiver(lost.stream); }).what());
    const Lines lines = {
        "W " + context + "initiateNetworkReceiver \"" + text + "\"",
        "W " + context + "initiateNetworkReceiver Cannot be registered on:  \"A missing adapter\" ' ( \"missing0\" )"};
    EXPECT_EQ(log.stepsOf(lines), lines);
    EXPECT_THROW(engine.getNetworkDeviceHandle("missing0"), ResourceNotAvailable);
    EXPECT_THROW(engine.addRemoteStreamReceiver(empty.stream), InstanceNotCreateable);
    EXPECT_THROW(engine.getAudioBuffer(mac, 0), ResourceNotAvailable);
    EXPECT_NO_THROW(engine.getNetworkDeviceHandle("lo")); // its receiver stays

    engine.addRemoteStreamReceiver(good.stream);
    avb::AvbAudioBuffer *buffer = engine.getAudioBuffer(mac, 0);
    for (sonvex::StreamConfiguration *stream : {&good.stream, &again.stream}) {
        const auto refusal =
            refusalOf<exceptions::StreamingDeviceAlreadyExists>([&] { engine.addRemoteStreamReceiver(*stream); });
        const pcapplus::PcapDeviceInfo &adapter = *stream->getNetworkDeviceInfo();
        EXPECT_STREQ(refusal.what(), "Streaming device already exists");
        EXPECT_EQ(refusal.getNetworkDeviceName(), adapter.getSystemDeviceName());
        EXPECT_EQ(refusal.getStreamDeviceMacAddress(), mac);
        EXPECT_EQ(log.warnings().back(),
                  "W " + context +
                      "addNetworkStreamToNetworkReceiver \"Streaming device already exists\" :  \"020000000003\" ' "
                      "already registered to ' \"" +
                      adapter.getSystemDeviceDescription() + "\" ' ( \"" + adapter.getSystemDeviceName() +
                      "\" ). No action will be performed!");
    }
    EXPECT_EQ(engine.getAudioBuffer(mac, 0), buffer);
    EXPECT_EQ(engine.getNetworkDeviceHandle("twin0")->getUid(), "twin0"); // the second adapter's receiver stays
    support::removeInterface("twin0");
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
    EXPECT_EQ(log.stepsOf({"Packet receiver forced to end", "Worker thread ended", "PCAP listener INACTIVE",
                           "Release PCAP and free memory", "~AvtpPacketReceiver", "~AvbAudioBuffer",
                           "~AvtpPacketChecker", "Network receiver cleared!", "Cleanup completed!"}),
              (Lines{"PCAP listener INACTIVE", "Packet receiver forced to end", "Worker thread ended",
                     "PCAP listener INACTIVE", "Release PCAP and free memory", "~AvtpPacketReceiver", "~AvbAudioBuffer",
                     "~AvbAudioBuffer", "~AvtpPacketChecker", "Network receiver cleared!", "Cleanup completed!"}));
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
