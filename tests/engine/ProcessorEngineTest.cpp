#include "engine/processing/ProcessorEngine.h"

#include <memory>
#include <thread>

#include <QThread>

#include <gtest/gtest.h>
#include <sonvex/exceptions.h>

#include "avb/AvbAudioBuffer.h"
#include "core/configuration/BufferConfiguration.h"
#include "core/configuration/ProcessConfiguration.h"
#include "core/metering/ProcessConnection.h"
#include "engine/processing/ProcessorHandle.h"
#include "process/configuration/DemoConfig.h"
#include "process/configuration/WaveformConfig.h"
#include "support/capture.h"
#include "support/LogRecorder.h"
#include "support/refusalOf.h"
#include "support/waitFor.h"

namespace {

using engine::processing::ProcessorHandle;
using Lines = std::vector<std::string>;

const std::string mac = "0a0b0c0d0e0f";

/// A configuration that reports whatever type it is told to.
class ForeignConfig : public process::ProcessorConfigBase {
public:
    explicit ForeignConfig(const std::string &type) : ProcessorConfigBase("foreign", type) {}
    std::string toString() const override { return "ForeignConfig"; }
};

/// An engine and a channel that signals every 3 samples.
class ProcessorEngine : public testing::Test {
protected:
    ProcessorHandle &add(const std::string &name, unsigned char channel) {
        configurations.push_back(std::make_unique<sonvex::ProcessConfiguration>(name, &waveform, mac, channel));
        const int threads = log.count("SampleProcessorBase::progress");
        ProcessorHandle &handle = *engine->addProcessor(*configurations.back(), buffer);
        support::waitFor([&] { return log.count("SampleProcessorBase::progress") > threads; });
        engine->getProcessConnection(handle)->setCallbackMethod([this](sonvex::ChannelData &result) {
            EXPECT_EQ(testThread, QThread::currentThread());
            delivered.push_back(result.getName());
        });
        return handle;
    }

    support::LogRecorder log;
    QThread *testThread = QThread::currentThread();
    sonvex::BufferConfiguration bufferConfig{"buffer", 16, 3};
    avb::AvbAudioBuffer buffer{"ch1", bufferConfig};
    process::WaveformConfig waveform{"waveform", 3};
    std::vector<std::unique_ptr<sonvex::ProcessConfiguration>> configurations;
    Lines delivered;
    std::unique_ptr<engine::processing::ProcessorEngine> engine =
        std::make_unique<engine::processing::ProcessorEngine>();
};

TEST_F(ProcessorEngine, logsTheLifeOfItsProcessorsInOrder) {
    const std::string space = "D engine::processing::";
    const std::string uniqueId = "\"WaveformProcessor_" + mac + "_200\"";
    add("left", 200);
    engine->stop();
    engine.reset();
    const Lines lines = {space + "ProcessorFactory::ProcessorFactory Created!",
                         space + "ProcessorHandleManager::ProcessorHandleManager Created!",
                         space + "ProcessorEngine::ProcessorEngine Created",
                         space + "ProcessorSocket::ProcessorSocket \"left\" Created!",
                         space +
                             "ProcessorEngine::addProcessor Successfully added new Processor instance ' \"left\" "
                             "' for streaming device ' \"" +
                             mac + "\" ' processing channel:  200",
                         space + "ProcessorHandle::ProcessorHandle " + uniqueId + " Handle initialized!",
                         space + "ProcessorHandleManager::addHandle Created new Processor handle with unique ID ' " +
                             uniqueId + " ' and added to processor socket:  \"left\"",
                         space + "ProcessorEngine::stop Processor engine stopped!",
                         "D threading::Worker::~Worker \"left\" DELETED",
                         space + "ProcessorEngine::~ProcessorEngine Processor sockets cleared!",
                         space + "ProcessorEngine::~ProcessorEngine Deleted!",
                         space + "ProcessorHandleManager::~ProcessorHandleManager Processor handles cleared!",
                         space + "ProcessorHandleManager::~ProcessorHandleManager Deleted!"};
    EXPECT_EQ(log.stepsOf(lines), lines);
}

TEST_F(ProcessorEngine, refusesASecondProcessorForAChannelAndLeavesTheFirstAlone) {
    ProcessorHandle &handle = add("first", 1);
    handle.start();
    sonvex::ProcessConfiguration again("second", &waveform, mac, 1);
    const std::string uniqueId = "WaveformProcessor_" + mac + "_1";
    log.clear();
    const auto refusal =
        support::refusalOf<exceptions::ProcessorAlreadyExists>([&] { engine->addProcessor(again, buffer); });
    EXPECT_STREQ("Processor for the given process configuration 'second' already exists", refusal.what());
    EXPECT_EQ(uniqueId, refusal.getProcessorUniqueId());
    EXPECT_EQ(Lines{"W engine::processing::ProcessorEngine::addProcessor \"Processor for the given process "
                    "configuration 'second' already exists\"  by processor unique ID:  \"" +
                    uniqueId + "\""},
              log.lines());
    support::capture(buffer, support::ramp(1, 3));
    EXPECT_TRUE(support::waitFor([&] { return delivered == Lines{"first"}; }));
}

TEST_F(ProcessorEngine, refusesTypesWithoutADefinition) {
    process::DemoConfig demo("demo", 1);
    ForeignConfig unknown("");
    for (process::ProcessorConfigBase *config : std::vector<process::ProcessorConfigBase *>{&demo, &unknown}) {
        sonvex::ProcessConfiguration configuration("name", config, mac, 1);
        support::expectRefusal<exceptions::InstanceNotCreateable>(
            log, [&] { engine->addProcessor(configuration, buffer); },
            "engine::processing::ProcessorFactory::createProcessor",
            "There is no definition available to build a processor of type: " + config->getProcessorType());
    }
    ForeignConfig impostor("WaveformProcessor");
    sonvex::ProcessConfiguration configuration("name", &impostor, mac, 1);
    EXPECT_THROW(engine->addProcessor(configuration, buffer), std::bad_cast);
    EXPECT_EQ("WaveformProcessor_" + mac + "_1", add("name", 1).getUniqueId()) << "nothing was registered before";
}

TEST_F(ProcessorEngine, refusesHandlesWithoutAProcessor) {
    using exceptions::ResourceNotAvailable;
    ProcessorHandle foreign("Foreign_1", std::make_shared<engine::Run>(), nullptr);
    support::expectRefusal<ResourceNotAvailable>(
        log, [&] { engine->getProcessConnection(foreign); },
        "engine::processing::ProcessorEngine::getProcessConnection",
        "ProcessorSocket for the given processor handle unique ID 'Foreign_1' don't exists! Process connection cannot "
        "be found!");
    support::expectRefusal<ResourceNotAvailable>(
        log, [&] { engine->removeProcessor(foreign); }, "engine::processing::ProcessorEngine::removeProcessor",
        "ProcessorSocket for the given processor handle (unique ID 'Foreign_1') don't exists! Processor cannot be "
        "removed");
}

TEST_F(ProcessorEngine, endsARemovedProcessorWithinTheCallAndDropsItsResults) {
    ProcessorHandle &handle = add("left", 1);
    handle.start();
    support::capture(buffer, support::ramp(1, 12));
    log.clear();
    engine->removeProcessor(handle);
    const std::string uniqueId = "\"WaveformProcessor_" + mac + "_1\"";
    EXPECT_EQ((Lines{"D engine::processing::ProcessorHandle::setHandleBound " + uniqueId + " Handle unbound!",
                     "D engine::processing::ProcessorHandleManager::deactivateProcessorHandle Processor handle with "
                     "unique ID ' " +
                         uniqueId + " ' is unbound now!",
                     "D threading::Controller::~Controller \"left\" Quit worker thread...",
                     "D process::Processor::end \"left\"  End called!",
                     "D process::InternalClock::stop \"left\" Clock stopped",
                     "D process::Processor::stop \"left\"  Processing stopped",
                     "D process::WaveformProcessor::~WaveformProcessor \"left\" Cleared!",
                     "D process::Processor::stop \"left\"  Processing not active! No action will be performed!",
                     "D threading::Worker::~Worker \"left\" DELETED",
                     "D threading::Controller::~Controller \"left\" Worker thread ended"}),
              log.lines());
    support::capture(buffer, support::ramp(1, 3));
    support::deliverQueued();
    EXPECT_TRUE(delivered.empty());
}

TEST_F(ProcessorEngine, refusesToRemoveAProcessorOnAnotherThread) {
    ProcessorHandle &handle = add("mine", 1);
    waveform.setClockType("Internal clock");
    waveform.setRefreshRate(1);
    handle.start();
    const std::string text = "The processor with unique ID 'WaveformProcessor_" + mac +
                             "_1' can be removed on the thread that added it only";
    std::thread([&] {
        EXPECT_EQ(text, support::refusalOf<exceptions::ResourceNotAvailable>([&] {
                            engine->removeProcessor(handle);
                        }).what());
    }).join();
    EXPECT_EQ(log.count("W engine::processing::ProcessorEngine::removeProcessor \"" + text + "\""), 1);
    EXPECT_TRUE(support::waitFor([&] { return delivered.size() > 3; })); // its clock goes on
    engine->removeProcessor(handle);
    EXPECT_FALSE(handle.isHandleBound());
}

} // namespace
