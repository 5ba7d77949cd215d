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
#include "engine/processing/ProcessorHandleManager.h"
#include "engine/processing/ProcessorSocket.h"
#include "process/Processor.h"
#include "process/configuration/DemoConfig.h"
#include "process/configuration/WaveformConfig.h"
#include "support/LogRecorder.h"
#include "support/capture.h"
#include "support/refusalOf.h"
#include "support/waitFor.h"

namespace {

using engine::processing::ProcessorHandle;
using engine::processing::ProcessorHandleManager;
using engine::processing::ProcessorSocket;
using Lines = std::vector<std::string>;

const std::string mac = "0a0b0c0d0e0f";

/// A configuration that reports whatever type it is told to.
class ForeignConfig : public process::ProcessorConfigBase {
public:
    explicit ForeignConfig(const std::string &type) : ProcessorConfigBase("foreign", type) {}
    std::string toString() const override { return "ForeignConfig"; }
};

class IdleProcessor : public process::Processor {
public:
    IdleProcessor() : Processor("idle", nullptr) {}
    void progress() override {}
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

TEST_F(ProcessorEngine, logsTheLifeOfItsProcessorsAndEndsARemovedOneWithinTheCall) {
    const std::string space = "D engine::processing::";
    const std::string manager = space + "ProcessorHandleManager::";
    const std::string uniqueId = "\"WaveformProcessor_" + mac + "_200\"";
    ProcessorHandle &handle = add("left", 200);
    const Lines added = {space + "ProcessorFactory::ProcessorFactory Created!",
                         manager + "ProcessorHandleManager Created!",
                         space + "ProcessorEngine::ProcessorEngine Created",
                         space + "ProcessorSocket::ProcessorSocket \"left\" Created!",
                         space +
                             "ProcessorEngine::addProcessor Successfully added new Processor instance ' \"left\" "
                             "' for streaming device ' \"" +
                             mac + "\" ' processing channel:  200",
                         space + "ProcessorHandle::ProcessorHandle " + uniqueId + " Handle initialized!",
                         manager + "addHandle Created new Processor handle with unique ID ' " + uniqueId +
                             " ' and added to processor socket:  \"left\""};
    EXPECT_EQ(log.stepsOf(added), added);

    handle.start();
    support::capture(buffer, support::ramp(1, 12));
    log.clear();
    engine->removeProcessor(handle);
    EXPECT_EQ(
        (Lines{
            space + "ProcessorHandle::setHandleBound " + uniqueId + " Handle unbound!",
            manager + "deactivateProcessorHandle Processor handle with unique ID ' " + uniqueId + " ' is unbound now!",
            "D threading::Controller::~Controller \"left\" Quit worker thread...",
            "D process::Processor::end \"left\"  End called!", "D process::InternalClock::stop \"left\" Clock stopped",
            "D process::Processor::stop \"left\"  Processing stopped",
            "D process::WaveformProcessor::~WaveformProcessor \"left\" Cleared!",
            "D process::Processor::stop \"left\"  Processing not active! No action will be performed!",
            "D threading::Worker::~Worker \"left\" DELETED",
            "D threading::Controller::~Controller \"left\" Worker thread ended"}),
        log.lines());
    support::capture(buffer, support::ramp(1, 3));
    support::deliverQueued();
    EXPECT_TRUE(delivered.empty());

    EXPECT_EQ(&handle, &add("left", 200));
    engine->stop();
    engine.reset();
    const Lines ended = {manager + "enableHandle Processor handle with unique ID ' " + uniqueId +
                             " ' reactivated to processor socket:  \"left\"",
                         space + "ProcessorEngine::stop Processor engine stopped!",
                         space + "ProcessorEngine::~ProcessorEngine Processor sockets cleared!",
                         space + "ProcessorEngine::~ProcessorEngine Deleted!",
                         manager + "~ProcessorHandleManager Processor handles cleared!",
                         manager + "~ProcessorHandleManager Deleted!"};
    EXPECT_EQ(log.stepsOf(ended), ended);
}

TEST_F(ProcessorEngine, refusesWhatItCannotHaveAndKeepsWhatItHas) {
    const std::string space = "engine::processing::";
    process::DemoConfig demo("demo", 1);
    ForeignConfig unknown("");
    ForeignConfig impostor("WaveformProcessor");
    for (process::ProcessorConfigBase *config : std::vector<process::ProcessorConfigBase *>{&demo, &unknown}) {
        sonvex::ProcessConfiguration configuration("name", config, mac, 1);
        support::expectRefusal<exceptions::InstanceNotCreateable>(
            log, [&] { engine->addProcessor(configuration, buffer); }, space + "ProcessorFactory::createProcessor",
            "There is no definition available to build a processor of type: " + config->getProcessorType());
    }
    sonvex::ProcessConfiguration wrong("name", &impostor, mac, 1);
    EXPECT_THROW(engine->addProcessor(wrong, buffer), std::bad_cast);

    const std::string uniqueId = "WaveformProcessor_" + mac + "_1";
    ProcessorHandle &handle = add("first", 1);
    EXPECT_EQ(uniqueId, handle.getUniqueId()) << "nothing was registered before";
    handle.start();
    sonvex::ProcessConfiguration again("second", &waveform, mac, 1);
    log.clear();
    const auto refusal =
        support::refusalOf<exceptions::ProcessorAlreadyExists>([&] { engine->addProcessor(again, buffer); });
    EXPECT_STREQ("Processor for the given process configuration 'second' already exists", refusal.what());
    EXPECT_EQ(uniqueId, refusal.getProcessorUniqueId());
    EXPECT_EQ(Lines{"W " + space + "ProcessorEngine::addProcessor \"" + refusal.what() +
                    "\"  by processor unique ID:  \"" + uniqueId + "\""},
              log.lines());

    ProcessorHandle foreign("Foreign_1", std::make_shared<engine::Run>(), nullptr);
    EXPECT_EQ("ProcessorHandle\n\tControlled Processor UID: Foreign_1", foreign.toString());
    support::expectRefusal<exceptions::ResourceNotAvailable>(
        log, [&] { engine->getProcessConnection(foreign); }, space + "ProcessorEngine::getProcessConnection",
        "ProcessorSocket for the given processor handle unique ID 'Foreign_1' don't exists! Process connection cannot "
        "be found!");
    support::expectRefusal<exceptions::ResourceNotAvailable>(
        log, [&] { engine->removeProcessor(foreign); }, space + "ProcessorEngine::removeProcessor",
        "ProcessorSocket for the given processor handle (unique ID 'Foreign_1') don't exists! Processor cannot be "
        "removed");
    support::capture(buffer, support::ramp(1, 3));
    EXPECT_TRUE(support::waitFor([&] { return delivered == Lines{"first"}; }));
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

TEST(ProcessorHandleManager, bindsAHandleToOneSocketAtATimeAndKeepsThoseThatAreUnbound) {
    const std::string context = "engine::processing::ProcessorHandleManager::";
    ProcessorHandleManager manager;
    const std::string heading = "ProcessorHandleManager\n\tList of managed processor handles (UID's):\n";
    EXPECT_EQ(heading, manager.toString());
    for (const char *id : {"b_2", "a_1", "b_10"}) {
        ProcessorSocket first("first", id, std::make_unique<IdleProcessor>());
        ProcessorSocket second("second", id, std::make_unique<IdleProcessor>());
        EXPECT_EQ("ProcessorSocket: first\n" + first.getProcessor()->toString(), first.toString());
        support::LogRecorder log;
        EXPECT_FALSE(manager.deactivateProcessorHandle(first));
        EXPECT_EQ(Lines{"W " + context + "deactivateProcessorHandle Processor handle with unique ID ' \"" + id +
                        "\" ' is not available and cannot be deactiaved by processor socket:  \"first\""},
                  log.warnings());
        ProcessorHandle &handle = *manager.getHandle(first);
        EXPECT_EQ("Processor handle with unique ID '" + std::string(id) +
                      "' is already bound and cannot be bind to processor socket: second",
                  support::refusalOf<exceptions::ResourceNotAvailable>([&] { manager.getHandle(second); }).what());
        EXPECT_EQ(log.count("W " + context + "enableHandle \"Processor handle with unique ID '"), 1);
        handle.start();
        EXPECT_TRUE(first.getProcessor()->isProcessingActive());
        EXPECT_FALSE(second.getProcessor()->isProcessingActive());
        EXPECT_TRUE(manager.deactivateProcessorHandle(first));
        EXPECT_FALSE(handle.isProcessingActive());
        EXPECT_EQ(&handle, manager.getHandle(second));
        EXPECT_TRUE(manager.deactivateProcessorHandle(second));
    }
    EXPECT_EQ(heading + "\t\ta_1\n\t\tb_10\n\t\tb_2\n", manager.toString());
}

} // namespace
