#include "live/LatencyMeasurement.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <optional>
#include <stdexcept>
#include <thread>

#include <QCoreApplication>
#include <QTimer>

#include "live/BareCapture.h"
#include "live/LibraryHost.h"
#include "live/PacedTalker.h"
#include "live/SendTime.h"
#include "talker/AafFrame.h"

namespace live {

namespace {

constexpr unsigned channels = 8;
constexpr unsigned samplesPerFrame = 6;
// Nearly class A: a round interval would keep its place in the kernel's millisecond, and its latency, for good.
constexpr unsigned rate = 7981;
constexpr unsigned rounds = 3;
constexpr unsigned measured = 4; // seconds of a round
constexpr int settleTime = 100;  // ms

using Latencies = std::vector<std::int64_t>;

void noteFrame(u_char *user, const pcap_pkthdr * /*header*/, const u_char *bytes) {
    const std::int64_t now = SendTime::now();
    reinterpret_cast<Latencies *>(user)->push_back(now - SendTime::read([&](unsigned sample) {
                                                       const u_char *const code = bytes + talker::AafFrame::headerSize +
                                                                                  std::size_t{sample} * channels * 2;
                                                       return code[0] << 8 | code[1];
                                                   }));
}

/// By the last frame in it, which is the one that led to it unless the host is late: a waveform is of the newest
/// signaled samples, so that several that wait show the same ones.
void noteWaveform(Latencies &latencies, std::int64_t &lastShown, const std::vector<double> &waveform) {
    const std::int64_t now = SendTime::now();
    const double *const frame = waveform.data() + waveform.size() - samplesPerFrame;
    const std::int64_t sent = SendTime::read([&](unsigned sample) { return std::lround(frame[sample] * 32768); });
    if (sent != lastShown) {
        latencies.push_back(now - sent);
        lastShown = sent;
    }
}

} // namespace

int LatencyMeasurement::expectedSeconds() const {
    return static_cast<int>(rows.size() * rounds * (measured + 1)) - static_cast<int>(rows.size());
}

void LatencyMeasurement::measure(const Link &link) {
    Traffic traffic{{channels, samplesPerFrame}};
    traffic.streams = 1;
    traffic.rate = traffic.batchesASecond = rate;
    for (unsigned round = 0; round < rounds; ++round) {
        for (Row &row : rows) {
            row.latencies.reserve(std::size_t{rounds} * measured * rate);
            std::optional<BareCapture> bare;
            std::optional<LibraryHost> host;
            std::int64_t lastShown = 0;
            if (row.clock == 0) {
                bare.emplace(link.adapter, noteFrame, reinterpret_cast<u_char *>(&row.latencies));
            } else {
                host.emplace(link.adapter, traffic, row.clock, [&](const std::vector<double> &samples) {
                    noteWaveform(row.latencies, lastShown, samples);
                });
            }
            PacedTalker talker(link.farEnd, traffic);
            QTimer quit; // on this thread, which delivers the results
            quit.setSingleShot(true);
            QObject::connect(&quit, &QTimer::timeout, QCoreApplication::instance(), &QCoreApplication::quit);
            std::thread sender([&] {
                talker.sendTimed(std::uint64_t{measured} * rate);
                QMetaObject::invokeMethod(&quit, [&quit] { quit.start(settleTime); });
            });
            QCoreApplication::exec();
            sender.join();
            row.sent += talker.sent() / std::max(1U, row.clock / samplesPerFrame);
        }
    }
    for (Row &row : rows) {
        if (row.latencies.empty()) {
            throw std::runtime_error("no frame has arrived");
        }
        std::sort(row.latencies.begin(), row.latencies.end());
    }
}

void LatencyMeasurement::print() const {
    std::printf("\nlatency in us from the sending of a frame: one stream of 8x6 int16, %u frames/s, %u s each\n"
                "to libpcap's callback, for each frame; to the host's callback of a waveform, for each frame that\n"
                "completes one and is shown. The kernel gathers frames for up to 1 ms, which both have to wait for\n"
                "%-20s %9s %9s %9s %9s %9s %9s\n",
                rate, rounds * measured, "to", "frames", "shown", "50 %", "99 %", "99.9 %", "greatest");
    for (const Row &row : rows) {
        const auto share = [&row](double part) {
            return static_cast<double>(
                       row.latencies[static_cast<std::size_t>(part * static_cast<double>(row.latencies.size() - 1))]) *
                   1e-3;
        };
        std::printf("%-20s %9llu %9zu %9.0f %9.0f %9.0f %9.0f\n", row.name.c_str(),
                    static_cast<unsigned long long>(row.sent), row.latencies.size(), share(0.5), share(0.99),
                    share(0.999), share(1));
    }
}

} // namespace live
