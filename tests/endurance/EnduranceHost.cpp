#include "endurance/EnduranceHost.h"

#include <algorithm>
#include <chrono>
#include <numeric>
#include <stdexcept>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>

#include "endurance/StreamTalker.h"

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

sonvex::INetworkDeviceInfo &findAdapter(const std::string &name) {
    auto &manager = sonvex::INetworkDeviceManager::createInstance();
    for (unsigned index = 1; index <= manager.getDeviceCount(); ++index) {
        if (manager.getDeviceInfo(index).getSystemDeviceName() == name) {
            return manager.getDeviceInfo(index);
        }
    }
    throw std::runtime_error("no adapter " + name);
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

EnduranceHost::EnduranceHost(const std::string &adapter) : random(7) {
    sonvex::INetworkDeviceManager::createInstance().scanDevices(); // no run is there that uses an earlier scan
    auto &facade = ISonvex::createInstance();
    auto &buffer = sonvex::IBufferConfiguration::createInstance("buffer", bufferSize, clockAmount);
    auto &device = sonvex::IDeviceConfiguration::createInstance("device", buffer, 2, StreamTalker::channels,
                                                                StreamTalker::samplesPerPacket);
    for (unsigned stream = 0; stream < streamAmount; ++stream) {
        const std::string name = "stream " + std::to_string(stream);
        capture = &facade.addRemoteStreamReceiver(
            sonvex::IStreamConfiguration::createInstance(name, macs()[stream], findAdapter(adapter), device));
        waveforms.push_back(&IWaveformConfig::createInstance(name, clockAmount));
        add(stream, 0, *waveforms.back());
        waveforms.push_back(&IWaveformConfig::createInstance(name, 960, 20));
        add(stream, 1, *waveforms.back());
        for (const unsigned char channel : {std::uint8_t{2}, std::uint8_t{3}}) {
            spectra.push_back(&ISpectrumConfig::createInstance(name, 0));
            spectra.back()->setFftOrder(channel == 2 ? 10 : 12);
            add(stream, channel, *spectra.back());
            spectra.back()->setMovingAverageActive(channel == 3);
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

void EnduranceHost::add(unsigned stream, unsigned char channel, IProcessorConfigBase &config) {
    auto &facade = ISonvex::createInstance();
    const std::size_t index = analyses.size();
    counts().resize(std::max(counts().size(), index + 1));
    auto &process = sonvex::IProcessConfiguration::createInstance("analysis " + std::to_string(index), config,
                                                                  macs()[stream], channel);
    auto &handle = facade.addProcessor(process);
    facade.getMeteringDataSource(handle).bindChannelCallback([index](sonvex::IChannelData &) { ++counts()[index]; });
    analyses.push_back({&process, &handle});
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
    auto &facade = ISonvex::createInstance();
    const auto below = [this](std::size_t limit) { return static_cast<unsigned>(random() % limit); };
    auto &spectrum = *spectra[below(spectra.size())];
    auto &waveform = *waveforms[below(waveforms.size())];
    Analysis &analysis = analyses[below(analyses.size())];
    switch (below(6)) {
    case 0:
        spectrum.setFftOrder(8 + below(6));
        break;
    case 1:
        spectrum.setMovingAverageActive(below(2) == 0);
        spectrum.setMovingAverageWindowSize(1 + below(20));
        break;
    case 2:
        spectrum.setRefreshRate(20 + below(30));
        spectrum.setClockType(below(2) == 0 ? "Internal clock" : "External clock");
        break;
    case 3:
        waveform.setSampleAmount(1 + below(4800));
        break;
    case 4:
        analysis.handle->stop();
        analysis.handle->start();
        break;
    default:
        facade.removeProcessor(*analysis.handle);
        if (&facade.addProcessor(*analysis.configuration) != analysis.handle) {
            throw std::logic_error("a processor that comes back has another handle");
        }
        analysis.handle->start();
        break;
    }
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
