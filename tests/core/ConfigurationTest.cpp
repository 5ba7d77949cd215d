#include <type_traits>

#include <QPointer>

#include <gtest/gtest.h>

#include "core/configuration/ProcessConfiguration.h"
#include "core/configuration/StreamConfiguration.h"
#include "process/configuration/WaveformConfig.h"
#include "support/LogRecorder.h"
#include "support/NoticeRecorder.h"

namespace {

using Lines = std::vector<std::string>;
using sonvex::BufferConfiguration;
using sonvex::DeviceConfiguration;
using sonvex::ProcessConfiguration;
using sonvex::StreamConfiguration;

static_assert(
    std::is_same_v<decltype(std::declval<StreamConfiguration &>().getDeviceConfiguration()), DeviceConfiguration &>);
static_assert(std::is_same_v<decltype(std::declval<ProcessConfiguration &>().getProcessorConfig()),
                             process::ProcessorConfigBase &>);

TEST(Configuration, printsAndLogsWhatItIsBuiltFrom) {
    process::WaveformConfig waveform("wave", 480);
    pcapplus::PcapDeviceInfo info(3, "eth0", "an adapter");
    const support::LogRecorder log;
    BufferConfiguration buffer("buf", 4800, 480);
    DeviceConfiguration device("dev", &buffer, 2, 8, 6);
    const StreamConfiguration stream("str", "001122334455", &info, &device);
    const ProcessConfiguration process("proc", &waveform, "001122334455", 255);
    EXPECT_EQ(buffer.toString(), "[buf]\n\tBuffer size: 4800\n\tClock signaling sample amount: 480");
    EXPECT_EQ(device.toString(), "[dev]\n\tDevice sample size in bytes: 2\n\tDevice amount of channels: 8\n"
                                 "\tDevice amount of samples send per channel: 6Buffer configuration:\n" +
                                     buffer.toString());
    EXPECT_EQ(stream.toString(), "[str] Device MAC address: 001122334455 Detailed device configuration:\n" +
                                     device.toString() + "\n Detailed network device informations: \n" +
                                     info.toString());
    EXPECT_EQ(process.toString(), "ProcessConfiguration: proc\nReceives stream from device: 001122334455\n"
                                  "Calculates sample data from audio channel: 255");
    EXPECT_EQ(log.lines(), (Lines{"D sonvex::DeviceConfiguration::DeviceConfiguration \"dev\" Initialized!",
                                  "D sonvex::ProcessConfiguration::ProcessConfiguration \"proc\" Object CREATED"}));
}

TEST(Configuration, neverDeletesWhatItWasBuiltFrom) {
    const QPointer<BufferConfiguration> buffer = new BufferConfiguration("buf", 4800);
    const QPointer<DeviceConfiguration> device = new DeviceConfiguration("dev", buffer, 2, 8, 6);
    const QPointer<process::WaveformConfig> waveform = new process::WaveformConfig("wave", 480);
    pcapplus::PcapDeviceInfo info(3, "eth0", "an adapter");
    delete new StreamConfiguration("str", "001122334455", &info, device);
    delete new ProcessConfiguration("proc", waveform, "001122334455", 0);
    EXPECT_TRUE(device);
    EXPECT_TRUE(waveform);
    delete device;
    EXPECT_TRUE(buffer);
    delete waveform;
    delete buffer;
}

TEST(BufferConfiguration, announcesItsSignalingAmountOnlyWhenItChanges) {
    BufferConfiguration buffer("buf", 4800);
    support::NoticeRecorder notices(buffer);
    const std::string off = "[buf]\n\tBuffer size: 4800\n\tBuffer clock signaling deactivated!";
    const Lines changed = {"SignalingSampleAmountChnaged"};
    EXPECT_FALSE(buffer.isClockSignalingActive());
    EXPECT_EQ(buffer.toString(), off);
    buffer.setClockSignalingSampleAmount(480);
    EXPECT_EQ(notices.take(), changed);
    EXPECT_TRUE(buffer.isClockSignalingActive());
    buffer.setClockSignalingSampleAmount(480);
    EXPECT_EQ(notices.take(), Lines{});
    buffer.setClockSignalingSampleAmount(0);
    EXPECT_EQ(notices.take(), changed);
    EXPECT_EQ(buffer.toString(), off);
}

} // namespace
