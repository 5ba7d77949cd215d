// How many channels with all three processors one core carries in real time: live, with a talker beside it, for a
// growing number of channels, and computed from the cost of single cycles.
#include <chrono>
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include <sys/resource.h>

#include <QCoreApplication>
#include <QProcess>
#include <QTimer>

#include <sonvex/sonvex.h>

#include "DrivenProcessor.h"
#include "avb/AvbAudioBuffer.h"
#include "core/configuration/BufferConfiguration.h"
#include "process/SoundLevelValueProcessor.h"
#include "process/SpectrumProcessor.h"
#include "process/WaveformProcessor.h"
#include "process/configuration/SoundLevelValueConfig.h"
#include "process/configuration/SpectrumConfig.h"
#include "process/configuration/WaveformConfig.h"
#include "support/NetworkNamespace.h"
#include "support/loopback.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr char mac[] = "020000000001";
constexpr unsigned signaled = 480;
constexpr unsigned fftOrder = 12;
constexpr unsigned bufferSize = 48000;
constexpr double cyclesPerSecond = 48000.0 / signaled;
constexpr int warmUp = 1500;   // ms
constexpr int measured = 4000; // ms

double cpuSeconds() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Measures one number of channels and prints its row.
void runLive(unsigned channels) {
    QProcess talker;
    talker.start(QStringLiteral(SONVEX_TALKER),
                 {QStringLiteral("--device"), QStringLiteral("lo"), QStringLiteral("--source"), QLatin1String(mac),
                  QStringLiteral("--channels"), QString::number(channels), QStringLiteral("--signal"),
                  QStringLiteral("noise:0.5")});
    ISonvex &library = ISonvex::createInstance();
    auto &buffer = sonvex::IBufferConfiguration::createInstance("buffer", bufferSize, signaled);
    auto &device = sonvex::IDeviceConfiguration::createInstance("device", buffer, 2, channels, 6);
    auto &capture = library.addRemoteStreamReceiver(
        sonvex::IStreamConfiguration::createInstance("stream", mac, support::loopback(), device));
    auto &waveform = sonvex::iprocess::IWaveformConfig::createInstance("waveform", signaled);
    auto &spectrum = sonvex::iprocess::ISpectrumConfig::createInstance("spectrum", 0);
    spectrum.setFftOrder(fftOrder);
    auto &levels = sonvex::iprocess::ISoundLevelValueConfig::createInstance("levels", 6 * signaled);
    std::vector<std::size_t> results(3);
    for (unsigned channel = 0; channel < channels; ++channel) {
        std::size_t kind = 0;
        for (auto *const config :
             std::initializer_list<sonvex::iprocess::IProcessorConfigBase *>{&waveform, &spectrum, &levels}) {
            auto &handle = library.addProcessor(sonvex::IProcessConfiguration::createInstance(
                "channel", *config, mac, static_cast<unsigned char>(channel)));
            library.getMeteringDataSource(handle).bindChannelCallback(
                [&count = results[kind++]](sonvex::IChannelData &) { ++count; });
            handle.start();
        }
    }
    capture.start();
    double cpu = 0;
    Clock::time_point begin;
    QTimer::singleShot(warmUp, Qt::PreciseTimer, [&] {
        results.assign(3, 0);
        cpu = cpuSeconds();
        begin = Clock::now();
    });
    QTimer::singleShot(warmUp + measured, Qt::PreciseTimer, qApp, &QCoreApplication::quit);
    QCoreApplication::exec();
    const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    const double load = (cpuSeconds() - cpu) / seconds;
    std::printf(
        "%8u %11.1f %11.1f %11.1f %9.1f %11.2f %11.0f\n", channels,
        static_cast<double>(results[0]) / seconds / channels, static_cast<double>(results[1]) / seconds / channels,
        static_cast<double>(results[2]) / seconds / channels, 100 * load, 100 * load / channels, channels / load);
    talker.terminate();
    talker.waitForFinished();
    ISonvex::destroy();
}

/// Microseconds of one cycle of a processor on a full buffer, the median of several rounds.
template <class Processor, class Config>
double cycleTime(Config &config) {
    sonvex::BufferConfiguration bufferConfig("buffer", bufferSize, signaled);
    avb::AvbAudioBuffer buffer("channel", bufferConfig);
    std::vector<float> samples(bufferSize);
    for (std::size_t n = 0; n < samples.size(); ++n) {
        samples[n] = static_cast<float>(std::sin(0.1 * static_cast<double>(n)));
    }
    buffer.writeSamples(samples.data(), samples.size());
    DrivenProcessor processor(Processor::createInstance("processor", config, buffer), buffer, signaled,
                              [](const sonvex::ChannelData &) {});
    constexpr int cycles = 1200;
    std::vector<double> times;
    for (int round = 0; round < 9; ++round) {
        const auto begin = Clock::now();
        for (int cycle = 0; cycle < cycles; ++cycle) {
            processor.cycle();
        }
        times.push_back(std::chrono::duration<double, std::micro>(Clock::now() - begin).count() / cycles);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

void compute() {
    process::WaveformConfig waveformConfig("waveform", signaled);
    process::SpectrumConfig spectrumConfig("spectrum", 0, "SpectrumProcessor");
    spectrumConfig.setFftOrder(fftOrder);
    process::SoundLevelValueConfig levelConfig("levels", 6 * signaled);
    const double waveform = cycleTime<process::WaveformProcessor>(waveformConfig);
    const double spectrum = cycleTime<process::SpectrumProcessor>(spectrumConfig);
    const double levels = cycleTime<process::SoundLevelValueProcessor>(levelConfig);
    const double perSecond = (waveform + spectrum + levels) * cyclesPerSecond * 1e-6;
    std::printf(
        "computed from the calculations alone: %.2f us a waveform, %.2f us a spectrum, %.2f us a cycle of levels; "
        "%.3f %% of a core a channel, %.0f channels a core\n",
        waveform, spectrum, levels, 100 * perSecond, 1 / perSecond);
}

} // namespace

int main(int argc, char **argv) {
    const bool isChild = argc == 2 && argv[1][0] != '-';
    if (!isChild) {
        support::enterNetworkNamespace();
    }
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const QCoreApplication application(argc, argv);
    if (isChild) {
        runLive(static_cast<unsigned>(std::stoul(argv[1])));
        return 0;
    }
    std::printf("\nchannels with waveform (%u samples), spectrum (order %u) and levels; results a second and channel\n"
                "%8s %11s %11s %11s %9s %11s %11s\n",
                signaled, fftOrder, "channels", "waveforms", "spectra", "levels", "CPU %", "% a channel", "a core");
    std::fflush(stdout);
    for (const unsigned channels : {1U, 2U, 4U, 8U, 16U, 32U, 64U}) {
        // A run of its own for each: the library lives once in a process.
        QProcess child;
        child.setProcessChannelMode(QProcess::ForwardedChannels);
        child.start(QCoreApplication::applicationFilePath(), {QString::number(channels)});
        if (!child.waitForFinished(60000) || child.exitCode() != 0) {
            return 1;
        }
    }
    compute();
    return 0;
}
