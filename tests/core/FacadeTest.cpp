#include <QMetaType>

#include <gtest/gtest.h>

#include "core/configuration/ProcessConfiguration.h"
#include "core/configuration/StreamConfiguration.h"
#include "core/facade/Sonvex.h"
#include "engine/processing/ProcessorHandle.h"
#include "process/configuration/WaveformConfig.h"
#include "support/ForeignObject.h"
#include "support/LogRecorder.h"
#include "support/refusalOf.h"

namespace {

using Lines = std::vector<std::string>;

/// A facade of the test's own with what a host hands to it, for a stream on the loopback adapter.
struct Host {
    sonvex::BufferConfiguration buffer{"buf", 4800};
    sonvex::DeviceConfiguration device{"dev", &buffer, 2, 2, 6};
    pcapplus::PcapDeviceInfo info{1, "lo", "loopback"};
    sonvex::StreamConfiguration stream{"str", "020000000001", &info, &device};
    process::WaveformConfig waveform{"wave", 480};
    sonvex::ProcessConfiguration process{"proc", &waveform, "020000000001", 0};
    support::ForeignObject foreign; ///< as a process of the same device and channel
    Sonvex facade;
};

TEST(Sonvex, registersTheTypesThatCrossThreads) {
    EXPECT_EQ(QMetaType::type("std::size_t"), qMetaTypeId<std::size_t>());
    for (const char *name : {"std::string", "sonvex::ChannelData", "std::shared_ptr<sonvex::BaseMessage>",
                             "std::shared_ptr<sonvex::ChannelAmountChanged"}) {
        EXPECT_NE(QMetaType::type(name), int(QMetaType::UnknownType)) << name;
    }
}

TEST(Sonvex, refusesForeignObjectsAndChangesNothing) {
    Host host;
    EXPECT_THROW(host.facade.addRemoteStreamReceiver(host.foreign), std::bad_cast);
    EXPECT_THROW(host.facade.removeProcessor(host.foreign), std::bad_cast);
    EXPECT_THROW(host.facade.addProcessor(host.foreign), exceptions::ResourceNotAvailable); // there is no stream
    host.facade.addRemoteStreamReceiver(host.stream);
    EXPECT_THROW(host.facade.addProcessor(host.foreign), std::bad_cast);
    EXPECT_NO_THROW(host.facade.addProcessor(host.process));
}

TEST(Sonvex, refusesHandlesThatItDoesNotKnow) {
    Host host;
    engine::processing::ProcessorHandle unknown("unknown_id", std::make_shared<engine::Run>(), nullptr);
    EXPECT_THROW(host.facade.removeProcessor(unknown), exceptions::ResourceNotAvailable);
    for (sonvex::ihandles::IProcessorHandle *handle :
         std::initializer_list<sonvex::ihandles::IProcessorHandle *>{&unknown, &host.foreign}) {
        support::LogRecorder log;
        support::expectRefusal<exceptions::ResourceNotAvailable>(
            log, [&] { host.facade.getMeteringDataSource(*handle); }, "Sonvex::getMeteringDataSource",
            "The requested MeteringDataSource is not available for processor handle unique ID: " +
                handle->getUniqueId());
    }
}

TEST(Sonvex, logsItsMessageReceiver) {
    Host host;
    const support::LogRecorder log;
    host.facade.setMessageReceiver([](const auto & /*message*/) {});
    EXPECT_EQ(log.lines(), Lines{"D Sonvex::setMessageReceiver Successfully registered the main application message "
                                 "receiver"});
}

TEST(Sonvex, deletesItsSourcesBeforeItsProcessors) {
    auto host = std::make_unique<Host>();
    host->facade.addRemoteStreamReceiver(host->stream);
    host->facade.addProcessor(host->process);
    const support::LogRecorder log;
    host.reset();
    const Lines steps = {"Sonvex::~Sonvex Destructor called!", "~MeteringDataSource \"proc\" Source deleted!",
                         "Sonvex::~Sonvex Metering data sources cleared!", "~Worker \"proc\" DELETED"};
    EXPECT_EQ(log.stepsOf(steps), steps);
}

TEST(Sonvex, destroysTheConfigurationsOnceUsersFirst) {
    ISonvex::destroy();
    const support::LogRecorder log;
    std::vector<std::pair<std::string, std::string>> deleted; // each with the line that was logged last
    const auto watch = [&](auto &configuration, const std::string &name) -> auto & {
        QObject::connect(dynamic_cast<QObject *>(&configuration), &QObject::destroyed,
                         [&deleted, &log, name] { deleted.emplace_back(name, log.lines().back()); });
        return configuration;
    };
    auto &buffer = watch(sonvex::IBufferConfiguration::createInstance("buf", 4800), "buffer 1");
    watch(sonvex::IBufferConfiguration::createInstance("buf", 4800, 480), "buffer 2");
    auto &spectrum = watch(sonvex::iprocess::ISpectrumConfig::createInstance("spec", 480), "spectrum");
    watch(sonvex::iprocess::IWaveformConfig::createInstance("wave", 480), "waveform");
    watch(sonvex::iprocess::ISoundLevelValueConfig::createInstance("level", 480), "level");
    watch(sonvex::IProcessConfiguration::createInstance("proc", spectrum, "020000000001", 0), "process");
    auto &device = watch(sonvex::IDeviceConfiguration::createInstance("dev", buffer, 2, 2, 6), "device");
    auto &info = sonvex::INetworkDeviceManager::createInstance().getDeviceInfo(1);
    watch(sonvex::IStreamConfiguration::createInstance("str", "020000000001", info, device), "stream");
    const auto step = [](const std::string &kind) {
        return "D ISonvex::destroy Deleting " + kind + " configurations...";
    };
    const decltype(deleted) expected = {{"stream", step("stream")},
                                        {"process", step("processor")},
                                        {"device", step("device")},
                                        {"spectrum", step("spectrum processor")},
                                        {"waveform", step("waveform processor")},
                                        {"level", step("sound level value processor")},
                                        {"buffer 1", step("buffer")},
                                        {"buffer 2", step("buffer")}};
    ISonvex::destroy();
    ISonvex::destroy();
    EXPECT_EQ(deleted, expected);
}

} // namespace
