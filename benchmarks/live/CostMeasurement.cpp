#include "live/CostMeasurement.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <stdexcept>
#include <thread>

#include "live/BareCapture.h"
#include "live/LibraryHost.h"
#include "live/PacedTalker.h"

namespace live {

namespace {

constexpr int rounds = 7;
constexpr double warmUp = 0.1;       // seconds
constexpr double measured = 0.25;    // seconds
constexpr double openAndClose = 0.2; // seconds
constexpr unsigned clockAmount = 480;
constexpr double goal = 1.4; ///< for 8x6
constexpr auto settleTime = std::chrono::milliseconds(20);

struct Cost {
    double nanoseconds; ///< a frame
    double rate;        ///< frames a second
};

template <class Capture>
Cost costOf(const Capture &capture, PacedTalker &talker, unsigned rate) {
    talker.send(static_cast<std::uint64_t>(warmUp * rate));
    std::this_thread::sleep_for(settleTime);
    const std::uint64_t frames = capture.captured();
    const double time = capture.threadTime().nanoseconds();
    const double reached = talker.send(static_cast<std::uint64_t>(measured * rate));
    std::this_thread::sleep_for(settleTime);
    if (capture.captured() == frames) {
        throw std::runtime_error("no frame has arrived");
    }
    return {(capture.threadTime().nanoseconds() - time) / static_cast<double>(capture.captured() - frames), reached};
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

} // namespace

std::vector<CostMeasurement::Row> CostMeasurement::makeRows() {
    const common::AafFormat int32 = *common::find(common::aafFormats, &common::AafFormat::name, "int32");
    return {{"2x6", {{2, 6}}},   {"8x6", {{8, 6}}},   {"8x6 tagged", {{8, 6}, 8, true}},
            {"8x48", {{8, 48}}}, {"60x6", {{60, 6}}}, {"8x6 int32", {{8, 6, int32}}}};
}

int CostMeasurement::expectedSeconds() const {
    return static_cast<int>(static_cast<double>(rows.size()) * rounds * 2 * (warmUp + measured + openAndClose));
}

void CostMeasurement::measure(const Link &link) {
    for (int round = 0; round < rounds; ++round) {
        for (Row &row : rows) {
            PacedTalker talker(link.farEnd, row.traffic);
            const Cost bare = costOf(BareCapture(link.adapter), talker, row.traffic.rate);
            const Cost library = costOf(LibraryHost(link.adapter, row.traffic, clockAmount), talker, row.traffic.rate);
            row.bare.push_back(bare.nanoseconds);
            row.library.push_back(library.nanoseconds);
            const double slowest = std::min(bare.rate, library.rate);
            row.rate = row.rate == 0 ? slowest : std::min(row.rate, slowest);
        }
    }
}

void CostMeasurement::print() const {
    std::printf("\nCPU time of the capture's thread a frame: %u streams, int16 if nothing else is said, %u frames/s\n"
                "bare: libpcap's loop with an empty callback; library: all frame checks, the conversion and the\n"
                "writes to buffers that signal each %u samples; medians of %d rounds in turn, ratio of each round\n"
                "%-12s %9s %12s %7s %15s %6s %10s\n",
                rows[0].traffic.streams, rows[0].traffic.rate, clockAmount, rounds, "case", "bare ns", "library ns",
                "ratio", "least..greatest", "goal", "frames/s");
    for (const Row &row : rows) {
        std::vector<double> ratios;
        for (std::size_t round = 0; round < row.bare.size(); ++round) {
            ratios.push_back(row.library[round] / row.bare[round]);
        }
        const auto [least, greatest] = std::minmax_element(ratios.begin(), ratios.end());
        std::printf("%-12s %9.0f %12.0f %7.2f %7.2f..%-6.2f", row.name.c_str(), median(row.bare), median(row.library),
                    median(ratios), *least, *greatest);
        row.name == "8x6" ? std::printf(" %6.1f", goal) : std::printf(" %6s", "");
        std::printf(" %10.0f\n", row.rate);
    }
}

} // namespace live
