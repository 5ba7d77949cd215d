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
constexpr double warmUp = 0.05;       // seconds
constexpr double measured = 0.2;      // seconds
constexpr double openAndClose = 0.15; // seconds
constexpr unsigned clockAmount = 480;
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

CostMeasurement::CostMeasurement(const std::string &only) {
    const common::AafFormat int32 = *common::find(common::aafFormats, &common::AafFormat::name, "int32");
    constexpr unsigned dense = 32 * Traffic::classA; // so that a wake-up counts for little
    for (const Row &row : {Row{"2x6", {{2, 6}}}, Row{"8x6", {{8, 6}}}, Row{"8x6-tagged", {{8, 6}, 8, true}},
                           Row{"8x6-dense", {{8, 6}, 8, false, dense}}, Row{"8x48", {{8, 48}}}, Row{"60x6", {{60, 6}}},
                           Row{"8x6-int32", {{8, 6, int32}}}}) {
        if (only.empty() || only == row.name) {
            rows.push_back(row);
        }
    }
    if (rows.empty()) {
        throw std::invalid_argument("there is no case '" + only + "'");
    }
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
    std::printf("\nCPU time of the capture's thread a frame, in 8 streams of int16 if nothing else is said\n"
                "bare: libpcap's loop with an empty callback; library: all frame checks, the conversion and the\n"
                "writes to buffers that signal each %u samples; medians and least values of %d rounds in turn, with\n"
                "up to 1000 wake-ups a second in both; frames/s: the least that was reached\n"
                "%-11s %8s %11s %6s %8s %11s %6s %5s %9s\n",
                clockAmount, rounds, "case", "bare ns", "library ns", "ratio", "least ns", "library ns", "ratio",
                "goal", "frames/s");
    for (const Row &row : rows) {
        const double bare = median(row.bare);
        const double library = median(row.library);
        const double leastBare = *std::min_element(row.bare.begin(), row.bare.end());
        const double leastLibrary = *std::min_element(row.library.begin(), row.library.end());
        std::printf("%-11s %8.0f %11.0f %6.2f %8.0f %11.0f %6.2f %5s %9.0f\n", row.name.c_str(), bare, library,
                    library / bare, leastBare, leastLibrary, leastLibrary / leastBare, row.name == "8x6" ? "1.4" : "",
                    row.rate);
    }
}

} // namespace live
