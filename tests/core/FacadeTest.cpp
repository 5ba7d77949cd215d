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

/// The recorded lines that begin with one of the contexts.
Lines linesOf(const support::LogRecorder &log, const Lines &contexts) {
    Lines found;
    for (const std::string &line : log.lines()) {
        for (const std::string &context : contexts) {
            if (line.compare(2, context.size() + 1, context + " ") == 0) {
                found.push_back(line);
            }
        }
    }
    return found;
}

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

/// Expects the refusal of a resource, with its text logged in the one line.
template <class Operation>
void expectRefusal(const Operation &operation, const std::string &context, const std::string &text) {
    const support::LogRecorder log;
    EXPECT_EQ(support::refusalOf<exceptions::ResourceNotAvailable>(operation).what(), text);
    EXPECT_EQ(log.lines(), Lines{"W " + context + " \"" + text + "\""});
}

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
    host.facade.addRemoteStreamReceiver(host.stream);
    EXPECT_THROW(host.facade.addProcessor(host.foreign), std::bad_cast);
    EXPECT_NO_THROW(host.facade.addProcessor(host.process));
}

TEST(Sonvex, refusesAProcessorBeforeItsStream) {
    Host host;
    for (sonvex::IProcessConfiguration *process :
         std::initializer_list<sonvex::IProcessConfiguration *>{&host.process, &host.foreign}) {
        expectRefusal([&] { host.facade.addProcessor(*process); }, "engine::streaming::StreamingEngine::getAudioBuffer",
                      "The requested audio buffer for streaming device MAC '020000000001' is NOT available! "
                      "The device stream is not received by the engine");
    }
}

TEST(Sonvex, refusesHandlesThatItDoesNotKnow) {
    Host host;
    engine::processing::ProcessorHandle unknown("unknown_id", nullptr);
    expectRefusal([&] { host.facade.removeProcessor(unknown); }, "engine::processing::ProcessorEngine::removeProcessor",
                  "ProcessorSocket for the given processor handle (unique ID 'unknown_id') don't exists! "
                  "Processor cannot be removed");
    for (sonvex::ihandles::IProcessorHandle *handle :
         std::initializer_list<sonvex::ihandles::IProcessorHandle *>{&unknown, &host.foreign}) {
        expectRefusal([&] { host.facade.getMeteringDataSource(*handle); }, "Sonvex::getMeteringDataSource",
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

TEST(Sonvex, deletesItsSourcesFirstThenTheProcessorsThenTheStreams) {
    auto host = std::make_unique<Host>();
    host->facade.addRemoteStreamReceiver(host->stream);
    host->facade.addProcessor(host->process);
    const support::LogRecorder log;
    host.reset();
    EXPECT_EQ(linesOf(log, {"Sonvex::~Sonvex", "sonvex::MeteringDataSource::~MeteringDataSource",
                            "engine::processing::ProcessorEngine::~ProcessorEngine",
                            "engine::streaming::StreamingEngine::~StreamingEngine"}),
              (Lines{"D Sonvex::~Sonvex Destructor called!",
                     "D sonvex::MeteringDataSource::~MeteringDataSource \"proc\" Source deleted!",
                     "D Sonvex::~Sonvex Metering data sources cleared!",
                     "D engine::processing::ProcessorEngine::~ProcessorEngine Processor sockets cleared!",
                     "D engine::processing::ProcessorEngine::~ProcessorEngine Deleted!",
                     "D engine::streaming::StreamingEngine::~StreamingEngine Network receiver cleared!",
                     "D engine::streaming::StreamingEngine::~StreamingEngine Cleanup completed!"}));
}

TEST(Sonvex, destroysTheConfigurationsOnceUsersFirstAndLogsItsStepsEveryTime) {
    const Lines steps = {"D ISonvex::destroy Sonvex data will be deleted!",
                         "D engine::processing::ProcessorEngine::stop Processor engine stopped!",
                         "D engine::streaming::StreamingEngine::stop Network receivers stopped!",
                         "D ISonvex::destroy Deleting stream configurations...",
                         "D ISonvex::destroy Deleting processor configurations...",
                         "D ISonvex::destroy Deleting device configurations...",
                         "D ISonvex::destroy Deleting spectrum processor configurations...",
                         "D ISonvex::destroy Deleting waveform processor configurations...",
                         "D ISonvex::destroy Deleting sound level value processor configurations...",
                         "D ISonvex::destroy Deleting buffer configurations..."};
    const Lines contexts = {"ISonvex::destroy", "engine::processing::ProcessorEngine::stop",
                            "engine::streaming::StreamingEngine::stop"};
    ISonvex::destroy();
    support::LogRecorder log;
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
    const decltype(deleted) expected = {{"stream", steps[3]},   {"process", steps[4]},  {"device", steps[5]},
                                        {"spectrum", steps[6]}, {"waveform", steps[7]}, {"level", steps[8]},
                                        {"buffer 1", steps[9]}, {"buffer 2", steps[9]}};
    for (int call = 1; call <= 2; ++call) {
        log.clear();
        ISonvex::destroy();
        EXPECT_EQ(linesOf(log, contexts), steps);
        EXPECT_EQ(deleted, expected);
    }
}

} // namespace
