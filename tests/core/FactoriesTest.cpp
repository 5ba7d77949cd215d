#include <gtest/gtest.h>

#include "core/facade/Registries.h"
#include "core/facade/Statics.h"
#include "support/ForeignObject.h"
#include "support/LogRecorder.h"
#include "support/refusalOf.h"

namespace {

std::size_t registered() {
    const Registries &all = statics::registries();
    return all.buffers.size() + all.devices.size() + all.streams.size() + all.processes.size();
}

TEST(Factories, refuseForeignObjectsAndRegisterNothing) {
    support::ForeignObject foreign;
    sonvex::IDeviceConfiguration &device = sonvex::IDeviceConfiguration::createInstance(
        "dev", sonvex::IBufferConfiguration::createInstance("buf", 4800), 2, 2, 6);
    sonvex::INetworkDeviceInfo &info = sonvex::INetworkDeviceManager::createInstance().getDeviceInfo(1);
    const std::size_t before = registered();
    EXPECT_THROW(sonvex::IDeviceConfiguration::createInstance("d", foreign, 2, 2, 6), std::bad_cast);
    EXPECT_THROW(sonvex::IStreamConfiguration::createInstance("s", "020000000001", foreign, device), std::bad_cast);
    EXPECT_THROW(sonvex::IStreamConfiguration::createInstance("s", "020000000001", info, foreign), std::bad_cast);
    EXPECT_THROW(sonvex::IProcessConfiguration::createInstance("p", foreign, "020000000001", 0), std::bad_cast);
    EXPECT_EQ(registered(), before);
}

TEST(Factories, keepEmptyAndNonAsciiTextsByteForByteWithEveryOtherValue) {
    sonvex::INetworkDeviceInfo &info = sonvex::INetworkDeviceManager::createInstance().getDeviceInfo(1);
    for (const std::string text : {"", "Bühne links", "ステージ"}) {
        const support::LogRecorder log;
        auto &buffer = sonvex::IBufferConfiguration::createInstance(text, 4800, 480);
        auto &device = sonvex::IDeviceConfiguration::createInstance(text, buffer, 2, 8, 6);
        const auto &stream = sonvex::IStreamConfiguration::createInstance(text, text, info, device);
        EXPECT_EQ(stream.toString(), "[" + text + "] Device MAC address: " + text +
                                         " Detailed device configuration:\n[" + text +
                                         "]\n\tDevice sample size in bytes: 2\n\tDevice amount of channels: 8\n"
                                         "\tDevice amount of samples send per channel: 6Buffer configuration:\n[" +
                                         text +
                                         "]\n\tBuffer size: 4800\n\tClock signaling sample amount: 480\n Detailed "
                                         "network device informations: \n" +
                                         info.toString());
        auto &waveform = sonvex::iprocess::IWaveformConfig::createInstance(text, 480);
        EXPECT_EQ(waveform.toString(), "WaveformProcessor: " + text +
                                           "\n\tProcessor type: WaveformProcessor\n\tRefresh rate: 500\n"
                                           "\tSample amount: 480\n\tClock type: External clock");
        const auto &process = sonvex::IProcessConfiguration::createInstance(text, waveform, text, 255);
        EXPECT_EQ(process.toString(), "ProcessConfiguration: " + text + "\nReceives stream from device: " + text +
                                          "\nCalculates sample data from audio channel: 255");
        EXPECT_EQ(dynamic_cast<sonvex::iprocess::IWaveformConfig *>(&process.getProcessorConfig()), &waveform);
        const std::string item = " \"" + text + "\" ";
        EXPECT_EQ(log.count("D sonvex::DeviceConfiguration::DeviceConfiguration" + item + "Initialized!"), 1);
        EXPECT_EQ(log.count("D sonvex::ProcessConfiguration::ProcessConfiguration" + item + "Object CREATED"), 1);
    }
}

TEST(Factories, describeStreamsByTheirIdAndDevicesByTheirFormat) {
    sonvex::INetworkDeviceInfo &info = sonvex::INetworkDeviceManager::createInstance().getDeviceInfo(1);
    auto &buffer = sonvex::IBufferConfiguration::createInstance("b", 10);
    for (const char *text :
         {"001b21FFfe0a0002", "00:1b:21:ff:fe:0a:00:02", "00-1B-21-FF-FE-0A:0002", "001b.21ff.fe0a.0002"}) {
        const sonvex::StreamId id{std::string(text)};
        EXPECT_EQ(id.toString(), "001b21fffe0a0002");
        auto &device =
            sonvex::IDeviceConfiguration::createInstance("d", buffer, sonvex::SampleFormat::Int24, 8, 0, 96000);
        const auto &stream = sonvex::IStreamConfiguration::createInstance("s", id, info, device);
        EXPECT_EQ(stream.getDeviceMacAddress(), "001b21fffe0a0002");
        EXPECT_EQ(stream.getDeviceConfiguration().getSampleSizeInBytes(), 3U);
        EXPECT_EQ(
            stream.toString(),
            "[s] Stream ID: 001b21fffe0a0002 Detailed device configuration:\n[d]\n\tDevice sample size in bytes: "
            "3\n\tDevice sample format: 24 bit integer\n\tDevice sample rate: 96000\n\tDevice amount of channels: "
            "8\n\tDevice amount of samples send per channel: 0Buffer configuration:\n[b]\n\tBuffer size: "
            "10\n\tBuffer clock signaling deactivated!\n Detailed network device informations: \n" +
                info.toString());
    }
    support::LogRecorder log;
    for (const std::string text :
         {"", "001b21fffe0a000", "001b21fffe0a00022", "001b21fffe0a00g2", "0:01b21fffe0a0002",
          "001b21fffe0a0002:", "00::1b21fffe0a0002", " 001b21fffe0a0002", "0x001b21fffe0a00"}) {
        support::expectRefusal<exceptions::InstanceNotCreateable>(
            log, [&] { const sonvex::StreamId id(text); }, "sonvex::StreamId::StreamId",
            "'" + text + "' is no stream ID: it takes 16 hexadecimal digits");
    }
}

} // namespace
