#include <gtest/gtest.h>

#include "core/facade/Registries.h"
#include "core/facade/Statics.h"
#include "support/ForeignObject.h"
#include "support/LogRecorder.h"

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
    for (const std::string text : {"", "Bühne links", "ステージ"}) {
        const support::LogRecorder log;
        sonvex::IBufferConfiguration &buffer = sonvex::IBufferConfiguration::createInstance(text, 4800, 480);
        EXPECT_EQ(buffer.toString(), "[" + text + "]\n\tBuffer size: 4800\n\tClock signaling sample amount: 480");
        sonvex::IDeviceConfiguration &device = sonvex::IDeviceConfiguration::createInstance(text, buffer, 2, 8, 6);
        EXPECT_EQ(device.getName(), text);
        EXPECT_EQ(device.getSampleSizeInBytes(), 2U);
        EXPECT_EQ(device.getAmountOfChannels(), 8U);
        EXPECT_EQ(device.getAmountOfSamplesPerChannel(), 6U);
        sonvex::INetworkDeviceInfo &info = sonvex::INetworkDeviceManager::createInstance().getDeviceInfo(1);
        const sonvex::IStreamConfiguration &stream =
            sonvex::IStreamConfiguration::createInstance(text, text, info, device);
        EXPECT_EQ(stream.getName(), text);
        EXPECT_EQ(stream.getDeviceMacAddress(), text);
        EXPECT_EQ(&stream.getDeviceConfiguration(), &device);
        sonvex::iprocess::IWaveformConfig &waveform = sonvex::iprocess::IWaveformConfig::createInstance(text, 480);
        EXPECT_EQ(waveform.toString().find("WaveformProcessor: " + text + "\n"), 0U);
        const sonvex::IProcessConfiguration &process =
            sonvex::IProcessConfiguration::createInstance(text, waveform, text, 255);
        EXPECT_EQ(process.getName(), text);
        EXPECT_EQ(process.getDeviceMacAddress(), text);
        EXPECT_EQ(process.getChannelNumber(), 255);
        EXPECT_EQ(dynamic_cast<sonvex::iprocess::IWaveformConfig *>(&process.getProcessorConfig()), &waveform);
        EXPECT_EQ(log.count("DeviceConfiguration::DeviceConfiguration \"" + text + "\" Initialized!"), 1);
    }
}

} // namespace
