#include <QProcess>

#include <gtest/gtest.h>

#include "support/Frames.h"
#include "support/waitFor.h"
#include "talker/RawSocket.h"

// Hosts come and go in processes of their own, while frames arrive: none may hang, crash or leave a thread behind.
namespace {

/// The log of a host that ended in time, with status 0, while a stream was on the loopback adapter.
std::string logOf(const char *program, const char *argument) {
    talker::RawSocket socket("lo");
    QProcess host;
    host.start(QString::fromLocal8Bit(program), {QString::fromLocal8Bit(argument)});
    std::uint8_t sequence = 0;
    const bool ended = support::waitFor([&] {
        const auto frame =
            support::makeFrame("020000000001", sequence++, 2, 6, [](unsigned, unsigned) { return std::int16_t{100}; });
        socket.send(frame.data(), frame.size());
        return host.state() == QProcess::NotRunning;
    });
    const std::string log = host.readAllStandardError().toStdString();
    if (!ended) {
        host.kill();
        host.waitForFinished();
        ADD_FAILURE() << "The host hangs.\n" << log;
    }
    EXPECT_EQ(host.exitStatus(), QProcess::NormalExit) << log;
    EXPECT_EQ(host.exitCode(), 0) << log;
    return log;
}

class HostEnds : public testing::TestWithParam<const char *> {};

TEST_P(HostEnds, inOrder) {
    const std::string log = logOf(LIFECYCLE_HOST, GetParam());
    std::size_t position = 0;
    for (const char *line : {"Sonvex::~Sonvex Destructor called!", "Sonvex::~Sonvex Metering data sources cleared!",
                             "process::WaveformProcessor::~WaveformProcessor \"external\" Cleared!",
                             "threading::Controller::~Controller \"external\" Worker thread ended",
                             "engine::processing::ProcessorEngine::~ProcessorEngine Deleted!",
                             "Release PCAP and free memory", "threading::Worker::~Worker \"AvtpPacketReceiver (eth",
                             "engine::streaming::StreamingEngine::~StreamingEngine Cleanup completed!"}) {
        const std::size_t found = log.find(line, position);
        ASSERT_NE(found, std::string::npos) << line << "\nis missing in\n" << log;
        position = found;
    }
    EXPECT_EQ(log.find("QThread: Destroyed"), std::string::npos) << log;
    EXPECT_EQ(log.find("another thread"), std::string::npos) << log;
}

INSTANTIATE_TEST_SUITE_P(WithoutDestroy, HostEnds,
                         testing::Values("return", "exit", "leakApplication", "secondApplication",
                                         "withoutApplication"),
                         [](const auto &instance) { return std::string(instance.param); });

TEST(Destroy, endsTheRunOnceAndLetsHandlesOnlyWarn) {
    const std::string log = logOf(LIFECYCLE_HOST, "destroy");
    std::string steps;
    for (std::size_t position = 0; (position = log.find("ISonvex::destroy ", position)) != std::string::npos;) {
        steps += log.substr(position, log.find('\n', position) - position + 1);
        position += 1;
    }
    const std::string once = "ISonvex::destroy Sonvex data will be deleted!\n"
                             "ISonvex::destroy Deleting stream configurations...\n"
                             "ISonvex::destroy Deleting processor configurations...\n"
                             "ISonvex::destroy Deleting device configurations...\n"
                             "ISonvex::destroy Deleting spectrum processor configurations...\n"
                             "ISonvex::destroy Deleting waveform processor configurations...\n"
                             "ISonvex::destroy Deleting sound level value processor configurations...\n"
                             "ISonvex::destroy Deleting buffer configurations...\n";
    EXPECT_EQ(steps, once + once);
    const std::size_t stopped = log.find("Network receivers stopped!");
    const std::size_t captureEnd = log.find("PCAP listener INACTIVE");
    EXPECT_LT(stopped, log.find("Deleting stream configurations..."));
    EXPECT_LT(captureEnd, log.find("Deleting stream configurations..."));
    EXPECT_NE(log.find("\"external\" The run was ended by ISonvex::destroy, the processor cannot be started!"),
              std::string::npos);
    EXPECT_NE(log.find("\"lo\" The run was ended by ISonvex::destroy, the capture cannot be started!"),
              std::string::npos);
}

TEST(Library, isLoadedAndUnloadedByAHostAtRunTime) {
    const std::string log = logOf(PLUGIN_HOST, LIBRARY_FILE);
    EXPECT_NE(log.find("StreamingEngine Cleanup completed!"), std::string::npos) << log;
}

} // namespace
