#include "endurance/EnduranceHost.h"

#include <algorithm>
#include <chrono>
#include <numeric>
#include <stdexcept>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>

#include "endurance/StreamTalker.h"
#include "support/loopback.h"

namespace endurance {

namespace {

using namespace sonvex::iprocess;

constexpr unsigned bufferSize = 48000;
constexpr unsigned clockAmount = 480;
constexpr int patience = 60000; // ms

/// Results by analysis. A function stays bound to its source from run to run, so they are counted here.
std::vector<std::uint64_t> &counts() {
    static std::vector<std::uint64_t> all;
    return all;
}

} // namespace

std::atomic<std::uint64_t> Told::gaps{0};
std::atomic<std::uint64_t> Told::refusals{0};
std::atomic<std::uint64_t> Told::failures{0};
std::atomic<std::uint64_t> Told::faults{0};

void Told::listen() {
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &line) {
        if (type == QtDebugMsg) {
            return;
        }
        const auto contains = [&](const char *text) { return line.contains(QLatin1String(text)); };
        gaps += contains("Packets missed") ? 1 : 0;
        refusals += contains("data length is unexpected") ? 1 : 0;
        failures += contains("The capture ended by itself") ? 1 : 0;
        if (contains("QObject") || contains("QThread") || contains("Cannot queue")) {
            ++faults;
            fprintf(stderr, "%s\n", line.toUtf8().constData());
        }
    });
}

std::vector<std::string> EnduranceHost::macs() {
    std::vector<std::string> all;
    for (unsigned stream = 0; stream < streamAmount; ++stream) {
        all.push_back("02000000000" + std::to_string(stream + 1));
    }
    return all;
}

EnduranceHost::EnduranceHost(const std::string &adapter) {
    sonvex::INetworkDeviceManager::createInstance().scanDevices(); // no run is there that uses an earlier scan
    auto &facade = ISonvex::createInstance();
    auto &buffer = sonvex::IBufferConfiguration::createInstance("buffer", bufferSize, clockAmount);
    auto &device = sonvex::IDeviceConfiguration::createInstance("device", buffer, 2, StreamTalker::channels,
                                                                StreamTalker::samplesPerPacket);
    for (unsigned stream = 0; stream < streamAmount; ++stream) {
        const std::string name = "stream " + std::to_string(stream);
        capture = &facade.addRemoteStreamReceiver(sonvex::IStreamConfiguration::createInstance(
            name, macs()[stream], support::networkDevice(adapter), device));
        add(stream, 0, IWaveformConfig::createInstance(name, clockAmount));
        add(stream, 1, IWaveformConfig::createInstance(name, 960, 20));
        for (const unsigned char channel : {std::uint8_t{2}, std::uint8_t{3}}) {
            auto &spectrum = ISpectrumConfig::createInstance(name, 0);
            spectrum.setFftOrder(channel == 2 ? 10 : 12);
            add(stream, channel, spectrum);
            spectrum.setMovingAverageActive(channel == 3);
        }
        for (const unsigned char channel : {std::uint8_t{4}, std::uint8_t{5}}) {
            add(stream, channel, ISoundLevelValueConfig::createInstance(name, 6 * clockAmount));
        }
    }
    for (const Analysis &analysis : analyses) {
        analysis.handle->start();
    }
    capture->start();
}

EnduranceHost::~EnduranceHost() {
    ISonvex::destroy();
}

void EnduranceHost::add(unsigned stream, unsigned char channel, ISampleProcessorConfigBase &config) {
    auto &facade = ISonvex::createInstance();
    const std::size_t index = analyses.size();
    counts().resize(std::max(counts().size(), index + 1));
    auto &process = sonvex::IProcessConfiguration::createInstance("analysis " + std::to_string(index), config,
                                                                  macs()[stream], channel);
    auto &handle = facade.addProcessor(process);
    facade.getMeteringDataSource(handle).bindChannelCallback([index](sonvex::IChannelData &) { ++counts()[index]; });
    analyses.push_back({&config, &process, &handle});
}

bool EnduranceHost::awaitAll() {
    const std::vector<std::uint64_t> before = counts();
    const QDeadlineTimer deadline(patience);
    while (!deadline.hasExpired()) {
        runFor(10);
        if (std::equal(before.begin(), before.end(), counts().begin(), std::less<>())) {
            return true;
        }
    }
    for (std::size_t index = 0; index < before.size(); ++index) {
        if (before[index] == counts()[index]) {
            fprintf(stderr, "analysis %zu delivers nothing\n", index);
        }
    }
    return false;
}

void EnduranceHost::change() {
    const Analysis &analysis = analyses[churn.below(analyses.size())];
    churn.change(*analysis.config, *analysis.process, *analysis.handle);
}

bool EnduranceHost::restartCapture() {
    capture->stop();
    capture->start();
    return capture->isRunning();
}

std::uint64_t EnduranceHost::results() const {
    return std::accumulate(counts().begin(), counts().end(), std::uint64_t{0});
}

void EnduranceHost::dropLastRun() {
    auto &config = IWaveformConfig::createInstance("none", 1);
    try {
        ISonvex::createInstance().addProcessor(
            sonvex::IProcessConfiguration::createInstance("none", config, "no stream", 0));
        throw std::logic_error("a processor was added to no stream");
    } catch (const exceptions::ResourceNotAvailable &) { // but a run has begun
    }
    ISonvex::destroy();
}

void EnduranceHost::runFor(int milliseconds) {
    const QDeadlineTimer deadline(milliseconds, Qt::PreciseTimer);
    while (!deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QThread::usleep(500);
    }
}

} // namespace endurance
