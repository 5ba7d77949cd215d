#include <QDeadlineTimer>
#include <QThread>

#include <gtest/gtest.h>

#include "support/Frames.h"
#include "support/Program.h"
#include "talker/RawSocket.h"

// Hosts come and go in processes of their own, while frames arrive: none may hang, crash or leave a thread behind.
namespace {

using Arguments = std::vector<std::string>;

/// The log of a host that ended in time, with status 0, while a stream was on the loopback adapter.
std::string logOf(const char *program, const Arguments &arguments) {
    talker::RawSocket socket("lo");
    support::Program host(program, arguments);
    std::uint8_t sequence = 0;
    for (const QDeadlineTimer deadline(60000); !host.hasEnded() && !deadline.hasExpired();) {
        const auto frame =
            support::makeFrame("020000000001", sequence++, 2, 6, [](unsigned, unsigned) { return std::int16_t{100}; });
        socket.send(frame.data(), frame.size());
        QThread::usleep(100);
    }
    const support::Program::Result result = host.wait(0);
    const std::string &log = result.err;
    EXPECT_EQ(result.exitStatus, 0) << "It hangs or fails.\n" << log;
    // A thread without event loop, or one that has ended, can have no timer: Qt says so of the internal clock's.
    const bool withoutLoop = arguments.back() == "none" || arguments[2] == "none";
    for (const char *fault :
         {"QThread: Destroyed", "Cannot queue arguments", withoutLoop ? "QMetaType" : "QObject::"}) {
        EXPECT_EQ(log.find(fault), std::string::npos) << log;
    }
    return log;
}

void expectInOrder(const std::string &log, const Arguments &lines) {
    std::size_t position = 0;
    for (const std::string &line : lines) {
        const std::size_t found = log.find(line, position);
        ASSERT_NE(found, std::string::npos) << line << "\nis missing in\n" << log;
        position = found;
    }
}

std::string nameOf(const Arguments &arguments) {
    std::string name;
    for (const std::string &argument : arguments) {
        name += argument.empty() || argument.front() == '/' ? "" : (name.empty() ? "" : "_") + argument;
    }
    return name;
}

class LinkedHost : public testing::TestWithParam<Arguments> {};

TEST_P(LinkedHost, endsInOrder) {
    const std::string log = logOf(LIFECYCLE_HOST, GetParam());
    expectInOrder(log, {"Sonvex::~Sonvex Destructor called!", "Sonvex::~Sonvex Metering data sources cleared!",
                        "engine::processing::ProcessorEngine::~ProcessorEngine Deleted!",
                        "engine::streaming::StreamingEngine::~StreamingEngine Cleanup completed!"});
    const bool staysWithoutApplication = GetParam()[2] == "leaked" || GetParam()[2] == "none";
    const bool goesOnUpToHere = GetParam()[1] == "exit" || (GetParam()[1] == "nothing" && staysWithoutApplication);
    if (goesOnUpToHere) {
        expectInOrder(log, {"Sonvex::~Sonvex Metering data sources cleared!",
                            "process::WaveformProcessor::~WaveformProcessor \"external\" Cleared!",
                            "threading::Controller::~Controller \"external\" Worker thread ended",
                            "engine::processing::ProcessorEngine::~ProcessorEngine Deleted!", "PCAP listener INACTIVE",
                            "Release PCAP and free memory", "threading::Worker::~Worker \"AvtpPacketReceiver (eth",
                            "engine::streaming::StreamingEngine::~StreamingEngine Cleanup completed!"});
    }
}

std::vector<Arguments> everyLinkedEnd() {
    std::vector<Arguments> ends;
    for (const char *where : {"loop", "callback", "message"}) {
        for (const char *action : {"nothing", "exit", "destroy", "destroyTwice", "destroyAndExit", "removeAndDestroy",
                                   "destroyAndRemove", "newRun", "newRunAndExit", "throw"}) {
            for (const char *application : {"own", "leaked", "second", "goesFirst"}) {
                ends.push_back({where, action, application});
            }
        }
    }
    for (const char *action : {"nothing", "exit", "destroy", "destroyAndExit", "removeAndDestroy", "newRun"}) {
        ends.push_back({"code", action, "none"});
    }
    ends.push_back({"loop", "hundredRuns", "own"});
    ends.push_back({"loop", "askEndedHandles", "own"});
    ends.push_back({"loop", "stallCapture", "second"});
    ends.push_back({"loop", "stallProcessor", "second"});
    return ends;
}

INSTANTIATE_TEST_SUITE_P(EveryWay, LinkedHost, testing::ValuesIn(everyLinkedEnd()),
                         [](const auto &instance) { return nameOf(instance.param); });

class PluginHost : public testing::TestWithParam<Arguments> {};

TEST_P(PluginHost, loadsAndUnloads) {
    const std::string log = logOf(PLUGIN_HOST, GetParam());
    EXPECT_NE(log.find("StreamingEngine Cleanup completed!"), std::string::npos) << log;
}

std::vector<Arguments> everyPluginLife() {
    std::vector<Arguments> lives;
    for (const char *ending : {"destroy", "remove", "none"}) {
        for (const char *thread : {"main", "other"}) {
            for (const char *rounds : {"1", "2"}) {
                lives.push_back({PLUGIN_FILE, LIBRARY_FILE, ending, "close", thread, rounds});
            }
            lives.push_back({PLUGIN_FILE, LIBRARY_FILE, ending, "leave", thread, "1"});
        }
    }
    lives.push_back({PLUGIN_FILE, LIBRARY_FILE, "destroy", "close", "main", "100"});
    return lives;
}

INSTANTIATE_TEST_SUITE_P(EveryWay, PluginHost, testing::ValuesIn(everyPluginLife()),
                         [](const auto &instance) { return nameOf(instance.param); });

TEST(Destroy, stopsEverythingFirstAndLetsHandlesOnlyWarn) {
    const std::string log = logOf(LIFECYCLE_HOST, {"loop", "askEndedHandles", "own"});
    expectInOrder(log, {"ISonvex::destroy Sonvex data will be deleted!", "Processor engine stopped!",
                        "Network receivers stopped!", "Deleting stream configurations..."});
    expectInOrder(log, {"PCAP listener INACTIVE", "Deleting stream configurations..."});
    const std::string over = "The run was ended by ISonvex::destroy, ";
    const std::string processor = "::ProcessorHandle::start \"WaveformProcessor_020000000001_0\" " + over;
    expectInOrder(log, {processor + "the processor cannot be started!",
                        "::NetworkReceiverHandle::start \"lo\" " + over + "the capture cannot be started!",
                        "::NetworkReceiverHandle::stop \"lo\" " + over + "there is no capture to stop!",
                        "::ProcessorHandleManager::addHandle", processor + "the processor cannot be started!"});
}

} // namespace
