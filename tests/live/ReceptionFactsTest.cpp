#include <chrono>
#include <string>
#include <tuple>
#include <vector>

#include <QLoggingCategory>

#include <gtest/gtest.h>

#include <sonvex/sonvex.h>

#include "support/Frames.h"
#include "support/LiveStream.h"
#include "support/LogHandler.h"
#include "support/NetworkNamespace.h"
#include "support/loopback.h"
#include "support/refusalOf.h"
#include "support/waitFor.h"
#include "talker/RawSocket.h"

// What a host knows of frames and adapters without reading a line of the log.
namespace {

using sonvex::FrameRefusal;
using sonvex::IAdapterFacts;
using sonvex::IStreamFacts;
using support::waitFor;

/// Nobody hears a line while one lives.
class Silence {
public:
    Silence() { QLoggingCategory::setFilterRules(QStringLiteral("*=false")); }
    ~Silence() { QLoggingCategory::setFilterRules({}); }
    Silence(const Silence &) = delete;
    Silence &operator=(const Silence &) = delete;
};

std::int16_t one(std::size_t, unsigned) {
    return 1;
}

/// Two connected adapters, which the library knows: on a loopback adapter the kernel would count each drop twice.
class Adapters {
public:
    Adapters() {
        support::makeVethPair("near0", "far0");
        sonvex::INetworkDeviceManager::createInstance().scanDevices();
    }
    ~Adapters() {
        ISonvex::destroy();
        support::removeInterface("near0");
    }
    Adapters(const Adapters &) = delete;
    Adapters &operator=(const Adapters &) = delete;
};

/// A stream of two channels, whose frames are made one by one.
class ReceptionFacts : public testing::Test {
protected:
    ReceptionFacts() { stream.capture.start(); }

    std::vector<std::uint8_t> frame(std::uint8_t sequence, unsigned channels = 2, unsigned samples = 6) const {
        return support::makeFrame(stream.mac, sequence, channels, samples,
                                  [](unsigned, unsigned) { return std::int16_t{1}; });
    }
    void send(const std::vector<std::uint8_t> &bytes) {
        socket.send(bytes.data(), bytes.size());
        ++sent;
    }
    /// Whether all that was sent has been captured, or dropped by the kernel.
    bool arrives() const {
        return waitFor([&] { return adapter.getFramesSeen() + adapter.getKernelDrops() == sent; });
    }

    const Silence silence;
    const Adapters adapters;
    support::LiveStream stream{2, 480, one, "near0", "far0"};
    talker::RawSocket socket{"far0"};
    const IStreamFacts &facts = IStreamFacts::createInstance(stream.mac);
    const IAdapterFacts &adapter = IAdapterFacts::createInstance(stream.capture);
    std::uint64_t sent = 0;
};

TEST_F(ReceptionFacts, sayWhatBecomesOfEachFrame) {
    EXPECT_EQ(facts.getFormat(), -1);
    EXPECT_EQ(facts.getSteadyTime(), 0);
    for (const int sequence : {254, 255, 0, 1}) {
        send(frame(static_cast<std::uint8_t>(sequence)));
    }
    for (const int sequence : {5, 6}) { // 2, 3 and 4 are lost, and 5 shows it
        send(frame(static_cast<std::uint8_t>(sequence)));
    }
    for (const int sequence : {6, 3, 7, 9, 8, 10}) { // twice; late; 8 is lost, comes late, and 10 is taken for a gap
        send(frame(static_cast<std::uint8_t>(sequence)));
    }
    send(frame(11, 2, 5));
    send(frame(12, 2, 7));
    send(frame(13, 3, 4));
    send(frame(14, 0, 6));
    auto cut = frame(15);
    cut.resize(cut.size() - 1);
    send(cut);
    cut = frame(16);
    cut.resize(35);
    send(cut);
    cut.resize(20);
    send(cut);
    send(frame(17)); // shows a gap, though nothing is lost
    send(frame(18));
    cut.resize(16); // not even a number
    send(cut);
    auto foreign = frame(19);
    foreign[11] ^= 1; // another address
    send(foreign);
    foreign = frame(19);
    foreign[14] = 4; // another subtype
    send(foreign);
    ASSERT_TRUE(arrives());
    EXPECT_EQ(facts.getFramesTaken(), 6U); // 254 to 1, 6 and 18
    EXPECT_EQ(facts.getGaps(), 8U);        // at 5, 6, 3, 7, 9, 8, 10 and 17
    EXPECT_EQ(facts.getFramesLost(), 4U);
    EXPECT_EQ(facts.getFramesRepeated(), 3U);
    EXPECT_EQ(facts.getFramesRefused(FrameRefusal::DataLength), 2U);
    EXPECT_EQ(facts.getFramesRefused(FrameRefusal::ChannelAmount), 2U);
    EXPECT_EQ(facts.getFramesRefused(FrameRefusal::IncompleteSamples), 1U);
    EXPECT_EQ(facts.getFramesRefused(FrameRefusal::IncompleteHeader), 3U);
    EXPECT_EQ(facts.getFramesRefused(), 8U);
    EXPECT_EQ(adapter.getFramesOfNoStream(), 2U);
    EXPECT_EQ(facts.getChannelAmount(), -1);
    EXPECT_EQ(facts.getDataLength(), -1);
}

TEST_F(ReceptionFacts, sayWhatTheNewestFrameDeclaresAndWhenItCame) {
    using std::chrono::duration_cast;
    const auto system = [] {
        return duration_cast<std::chrono::microseconds>(std::chrono::system_clock::now().time_since_epoch()).count();
    };
    const auto steady = [] {
        return duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch()).count();
    };
    for (int round = 0; round < 3; ++round) {
        const auto systemBefore = system();
        const auto steadyBefore = steady();
        auto bytes = frame(static_cast<std::uint8_t>(round), 1, 200);
        bytes[30] = static_cast<std::uint8_t>(round + 2);
        send(bytes);
        ASSERT_TRUE(arrives());
        EXPECT_EQ(facts.getFormat(), round + 2);
        EXPECT_EQ(facts.getChannelAmount(), 1);
        EXPECT_EQ(facts.getDataLength(), 400);
        EXPECT_GE(facts.getCaptureTime(), systemBefore);
        EXPECT_LE(facts.getCaptureTime(), system());
        EXPECT_GE(facts.getSteadyTime(), steadyBefore - 10'000'000);
        EXPECT_LE(facts.getSteadyTime(), steady());
    }
}

TEST_F(ReceptionFacts, sayHowAFrameWasTaggedAndWhichStreamItNames) {
    const auto tagged = [&](std::uint8_t sequence, const std::vector<std::uint8_t> &tag) {
        auto bytes = frame(sequence);
        bytes.insert(bytes.begin() + 12, tag.begin(), tag.end());
        return bytes;
    };
    EXPECT_EQ(facts.getVlanId(), -1);
    EXPECT_EQ(facts.getStreamId(), "");
    std::uint8_t sequence = 0;
    for (const auto &[tag, vlan, priority] : {std::tuple(std::vector<std::uint8_t>{0x81, 0x00, 0x60, 0x02}, 2, 3),
                                              {{0x81, 0x00, 0x02, 0x02}, 514, 0}, // as if it were the subtype
                                              {{0x81, 0x00, 0xE0, 0x00}, 0, 7},
                                              {{}, -1, -1}}) {
        send(tagged(sequence++, tag));
        ASSERT_TRUE(arrives());
        EXPECT_EQ(facts.getVlanId(), vlan);
        EXPECT_EQ(facts.getVlanPriority(), priority);
        EXPECT_EQ(facts.getFramesTaken(), sequence);
        EXPECT_EQ(facts.getStreamId(), stream.mac + "0000");
        EXPECT_EQ(facts.getBitDepth(), 16);
        EXPECT_EQ(facts.getSampleRate(), 48000);
    }
    send(tagged(sequence, {0x88, 0xA8, 0x02, 0x02})); // of a bridge of providers
    ASSERT_TRUE(arrives());
    EXPECT_EQ(facts.getFramesTaken(), sequence);
    EXPECT_EQ(adapter.getFramesOfNoStream(), 1U);
}

TEST_F(ReceptionFacts, belongToAStreamByItsIdToo) {
    auto &network = support::networkDevice("near0");
    auto &buffer = sonvex::IBufferConfiguration::createInstance("buffer", 480, 48);
    auto &device =
        sonvex::IDeviceConfiguration::createInstance("device", buffer, sonvex::SampleFormat::Int16, 2, 0, 96000);
    const sonvex::StreamId id(stream.mac + ":0007");
    const auto &configuration = sonvex::IStreamConfiguration::createInstance("by ID", id, network, device);
    ISonvex::createInstance().addRemoteStreamReceiver(const_cast<sonvex::IStreamConfiguration &>(configuration));
    EXPECT_EQ(&IStreamFacts::createInstance(id), &IStreamFacts::createInstance(id.toString()));
    auto bytes = frame(0, 2, 12);
    bytes[25] = 7;
    bytes[31] = 0x70;
    send(bytes);
    ASSERT_TRUE(arrives());
    EXPECT_EQ(IStreamFacts::createInstance(id).getFramesTaken(), 1U);
    EXPECT_EQ(facts.getFramesRefused(FrameRefusal::DataLength), 1U) << "the address has a say, too";
    auto &waveform = sonvex::iprocess::IWaveformConfig::createInstance("waveform", 48);
    auto &levels = sonvex::iprocess::ISoundLevelValueConfig::createInstance("levels", 48);
    auto &processing = ISonvex::createInstance();
    auto &handle =
        processing.addProcessor(sonvex::IProcessConfiguration::createInstance("waveform", waveform, id.toString(), 1));
    EXPECT_EQ(handle.getUniqueId(), waveform.getProcessorType() + "_" + stream.mac + "0007_1");
    EXPECT_EQ(
        support::refusalOf<exceptions::InstanceNotCreateable>([&] {
            processing.addProcessor(
                sonvex::IProcessConfiguration::createInstance("loudness", levels, id.toString(), 1));
        }).what(),
        std::string("Sound levels cannot be calculated by 'loudness' at a sample rate of 96000 Hz, only at 48000 Hz"));
}

TEST_F(ReceptionFacts, tellLossInThisMachineFromLossOnTheWire) {
    QLoggingCategory::setFilterRules({});
    support::StalledLine log("Packets missed");
    send(frame(0));
    send(frame(2));
    ASSERT_TRUE(waitFor([&] { return log.hasStalled(); }));
    auto large = frame(3);
    large.resize(1514); // what follows the declared samples is nobody's
    for (; adapter.getKernelDrops() == 0; ++large[16]) {
        send(large);
    }
    const std::uint64_t drops = adapter.getKernelDrops();
    log.release();
    ASSERT_TRUE(arrives());
    EXPECT_GE(adapter.getKernelDrops(), drops);
    EXPECT_EQ(facts.getFramesLost(), 1U);
    EXPECT_EQ(facts.getFramesTaken(), sent - 1 - adapter.getKernelDrops());
    stream.capture.stop();
    const std::uint64_t all = adapter.getKernelDrops();
    for (unsigned i = 0; i < 30000; ++i) { // more than there is room for: nobody listens
        send(large);
    }
    stream.capture.start();
    EXPECT_EQ(adapter.getKernelDrops(), all);
}

TEST_F(ReceptionFacts, stayWithTheirAddressFromRunToRun) {
    send(frame(0));
    send(frame(2));
    ASSERT_TRUE(arrives());
    ISonvex::destroy();
    EXPECT_EQ(facts.getFramesTaken(), 1U);
    EXPECT_EQ(facts.getGaps(), 1U);
    EXPECT_FALSE(adapter.isCapturing());
    const support::LiveStream other(1, 480, one, "near0", "far0");
    EXPECT_EQ(facts.getFramesTaken(), 1U);
    auto &buffer = sonvex::IBufferConfiguration::createInstance("buffer", 480, 48);
    auto &device = sonvex::IDeviceConfiguration::createInstance("device", buffer, 2, 2, 6);
    ISonvex::createInstance().addRemoteStreamReceiver(
        sonvex::IStreamConfiguration::createInstance("again", stream.mac, support::networkDevice("near0"), device));
    EXPECT_EQ(facts.getFramesTaken(), 0U);
    EXPECT_EQ(facts.getGaps(), 0U);
    EXPECT_EQ(facts.getChannelAmount(), -1);
    EXPECT_EQ(adapter.getFramesSeen(), 0U);
    EXPECT_EQ(&IStreamFacts::createInstance(stream.mac), &facts);
    EXPECT_EQ(&IAdapterFacts::createInstance("near0"), &adapter);
    EXPECT_THROW(IStreamFacts::createInstance("0200000000ff"), exceptions::ResourceNotAvailable);
    EXPECT_THROW(IAdapterFacts::createInstance("none"), exceptions::ResourceNotAvailable);
}

} // namespace
