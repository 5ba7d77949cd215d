// What live reception costs, loses and takes, over a pair of connected adapters in a network of its own.
// Usage: live_reception [cost|cost=CASE] [losses] [latency], all three if nothing is said.
#include <chrono>
#include <cstdio>
#include <exception>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <QCoreApplication>

#include "live/CostMeasurement.h"
#include "live/LatencyMeasurement.h"
#include "live/LossMeasurement.h"
#include "live/Machine.h"
#include "support/NetworkNamespace.h"

namespace {

constexpr double quiet = 0.05; ///< cores that others may use

void warnOf(const live::OthersLoad &load, const char *when) {
    if (load.cores() > quiet) {
        std::printf("WARNING: others used %.2f cores %s, so all figures are provisional\n", load.cores(), when);
    }
}

std::unique_ptr<live::Measurement> make(const std::string &name) {
    const std::string cost = "cost";
    const std::string oneCase = cost + "=";
    if (name == cost) {
        return std::make_unique<live::CostMeasurement>();
    }
    if (name.compare(0, oneCase.size(), oneCase) == 0) {
        return std::make_unique<live::CostMeasurement>(name.substr(oneCase.size()));
    }
    if (name == "losses") {
        return std::make_unique<live::LossMeasurement>();
    }
    if (name == "latency") {
        return std::make_unique<live::LatencyMeasurement>();
    }
    throw std::invalid_argument("there is no measurement '" + name + "', but cost, cost=CASE, losses and latency");
}

void run(std::vector<std::string> names) {
    if (names.empty()) {
        names = {"cost", "losses", "latency"};
    }
    std::vector<std::unique_ptr<live::Measurement>> measurements;
    int seconds = 1;
    for (const std::string &name : names) {
        measurements.push_back(make(name));
        seconds += measurements.back()->expectedSeconds();
    }
    const live::Measurement::Link link{"live0", "live1"};
    support::makeVethPair(link.adapter, link.farEnd);
    std::printf("%s; takes about %d s\n", live::describeMachine().c_str(), seconds);
    const live::OthersLoad before;
    std::this_thread::sleep_for(std::chrono::seconds(1));
    warnOf(before, "before it began");
    std::fflush(stdout);
    const live::OthersLoad meanwhile;
    for (const auto &measurement : measurements) {
        measurement->measure(link);
    }
    for (const auto &measurement : measurements) {
        measurement->print();
    }
    std::printf("\n%s at the end\n", live::describeMachine().c_str());
    warnOf(meanwhile, "meanwhile");
}

} // namespace

int main(int argc, char **argv) try {
    support::enterNetworkNamespace();
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const QCoreApplication application(argc, argv);
    run({argv + 1, argv + argc});
    return 0;
} catch (const std::exception &error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
