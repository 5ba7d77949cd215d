#include <map>
#include <string>

#include <gtest/gtest.h>

#include <sonvex/sonvex.h>

#include "support/Frames.h"
#include "support/loopback.h"
#include "support/waitFor.h"
#include "talker/RawSocket.h"

// A host that gets its numbers wrong at first: what is refused changes nothing, and what it gives then works.
namespace {

using namespace sonvex::iprocess;

constexpr char mac[] = "0200000000c1";
constexpr char otherMac[] = "0200000000c2";

class Correction : public testing::Test {
protected:
    ~Correction() override {
        ISonvex::destroy();
        support::deliverQueued();
    }

    auto &addStream(const char *address, unsigned channels) {
        return facade.addRemoteStreamReceiver(sonvex::IStreamConfiguration::createInstance(
            "stream", address, support::loopback(),
            sonvex::IDeviceConfiguration::createInstance("device", buffer, 2, channels, 6)));
    }

    void add(IProcessorConfigBase &config, const char *address = mac, unsigned char channel = 1) {
        auto &handle =
            facade.addProcessor(sonvex::IProcessConfiguration::createInstance("process", config, address, channel));
        facade.getMeteringDataSource(handle).bindChannelCallback(
            [&length = lengths[config.getProcessorType()]](auto &data) {
                length = static_cast<int>(data.getVectorData().getY().size());
            });
        handle.start();
    }

    /// Whether results of @p config come, of this length.
    bool delivers(IProcessorConfigBase &config, int length) {
        support::deliverQueued();
        lengths[config.getProcessorType()] = -1;
        return support::waitFor([&] {
                   const auto frame =
                       support::makeFrame(mac, sequence++, 2, 6, [](unsigned, unsigned) { return std::int16_t{5}; });
                   socket.send(frame.data(), frame.size());
                   return lengths[config.getProcessorType()] >= 0;
               }) &&
               lengths[config.getProcessorType()] == length;
    }

    ISonvex &facade = ISonvex::createInstance();
    sonvex::IBufferConfiguration &buffer = sonvex::IBufferConfiguration::createInstance("buffer", 480, 48);
    static inline std::map<std::string, int> lengths; ///< of the latest results by type, -1 before
    talker::RawSocket socket{"lo"};
    std::uint8_t sequence = 0;
};

TEST_F(Correction, ofEachConfigurationWorksInTheSameRun) {
    auto &waveform = IWaveformConfig::createInstance("waveform", 48, 0); // without a rate: on the external clock
    auto &spectrum = ISpectrumConfig::createInstance("spectrum", 0, 0);
    auto &levels = ISoundLevelValueConfig::createInstance("levels", 288, 0);
    EXPECT_THROW(addStream(mac, 0), exceptions::SonvexException); // some by the kinds that a host may catch them as
    EXPECT_THROW(add(waveform), std::exception);
    auto &capture = addStream(mac, 2);
    EXPECT_THROW(addStream(mac, 1), exceptions::InstanceAlreadyExists);
    addStream(otherMac, 1);
    EXPECT_THROW(add(waveform, mac, 2), exceptions::SonvexException);
    EXPECT_THROW(add(waveform, "0200000000c3"), exceptions::ResourceNotAvailable);
    add(waveform);
    EXPECT_THROW(add(waveform), exceptions::InstanceAlreadyExists);
    add(spectrum);
    add(levels);
    capture.start();

    spectrum.setFftOrder(9); // more than the buffer holds
    EXPECT_TRUE(delivers(waveform, 48));
    EXPECT_TRUE(delivers(levels, 7));
    spectrum.setFftOrder(6);
    EXPECT_TRUE(delivers(spectrum, 32));
    spectrum.setFftOrder(0);
    spectrum.setFftOrder(32);
    spectrum.setFftSize(0);
    spectrum.setFftSize(100);
    spectrum.setSampleAmount(16);
    EXPECT_EQ(spectrum.getFftOrder(), 6U);
    EXPECT_EQ(spectrum.getFftSize(), 64U);
    EXPECT_EQ(spectrum.getSampleAmount(), 64U);
    EXPECT_TRUE(delivers(spectrum, 32));
    spectrum.setFftSize(128);
    EXPECT_TRUE(delivers(spectrum, 64));

    for (ISampleProcessorConfigBase *config :
         std::initializer_list<ISampleProcessorConfigBase *>{&waveform, &spectrum, &levels}) {
        config->setRefreshRate(0);
        EXPECT_EQ(config->getRefreshRate(), 500U);
        config->setClockType("internal clock"); // such a text is kept, and so is the clock
        EXPECT_TRUE(delivers(*config, config == &waveform ? 48 : config == &spectrum ? 64 : 7));
        config->setRefreshRate(2);
        config->setClockType(config == &levels ? "External clock" : "Internal clock");
    }
    buffer.setClockSignalingSampleAmount(0);
    EXPECT_TRUE(delivers(waveform, 48)); // by its timer
    EXPECT_TRUE(delivers(spectrum, 64));
    buffer.setClockSignalingSampleAmount(48);
    EXPECT_TRUE(delivers(levels, 7));
}

} // namespace
