// Measures for hours while everything goes wrong that may: runs end and begin, processors come and go, links flap, an
// adapter goes and comes back, frames are damaged. Usage: endurance SECONDS SECONDS_OF_A_RUN
// Ends with 0 if no frame was lost that the kernel did not report, every analysis came back from every trouble, no
// thread was left after a run, descriptors did not grow from the second run on, and memory not from the fifth minute
// on.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>

#include <malloc.h>

#include <QCoreApplication>

#include "endurance/EnduranceHost.h"
#include "endurance/KernelDrops.h"
#include "endurance/Resources.h"
#include "endurance/StreamTalker.h"
#include "support/NetworkNamespace.h"

namespace {

using namespace endurance;
using Clock = std::chrono::steady_clock;

constexpr char adapter[] = "endure0";
constexpr char farEnd[] = "endure1";
constexpr double warmUp = 300;                     // seconds
constexpr std::size_t allowedGrowth = 1024 * 1024; // bytes
constexpr int drainTime = 300;                     // ms for what is on its way

int failures = 0;

void require(bool condition, const char *what) {
    if (!condition) {
        std::fprintf(stderr, "not true: %s\n", what);
        ++failures;
    }
}

struct Losses {
    std::uint64_t omitted;
    std::uint64_t gaps;
};

/// Measures for so long, while the host changes its mind and frames are damaged. Counts gaps while nothing else makes
/// any.
Losses measure(EnduranceHost &host, StreamTalker &talker, double seconds) {
    const Losses before{talker.omitted(), Told::gaps};
    talker.setDamage(true);
    for (const auto end = Clock::now() + std::chrono::duration<double>(seconds); Clock::now() < end;) {
        EnduranceHost::runFor(50);
        host.change();
    }
    talker.setDamage(false);
    EnduranceHost::runFor(drainTime); // a gap shows at the next frame
    return {talker.omitted() - before.omitted, Told::gaps - before.gaps};
}

void flapLink() {
    for (int i = 0; i < 3; ++i) {
        support::setInterfaceUp(farEnd, false);
        EnduranceHost::runFor(50);
        support::setInterfaceUp(farEnd, true);
        support::waitForLink(farEnd);
    }
}

/// Takes the adapter away from under a running capture and gives another one of its name.
void replaceAdapter(EnduranceHost &host, std::unique_ptr<StreamTalker> &talker) {
    const std::uint64_t failuresBefore = Told::failures;
    talker.reset();
    support::removeInterface(adapter);
    for (int i = 0; i < 1000 && Told::failures == failuresBefore; ++i) {
        EnduranceHost::runFor(10);
    }
    require(Told::failures == failuresBefore + 1, "the capture tells that its adapter has gone");
    support::makeVethPair(adapter, farEnd);
    require(host.restartCapture(), "the capture starts on the adapter that has come back");
    talker = std::make_unique<StreamTalker>(farEnd, EnduranceHost::macs());
}

} // namespace

int main(int argc, char **argv) {
    // One arena, so that the resident memory tells what is held: it differs by more from hour to hour with how the
    // freed blocks of fifty threads lie in many of them.
    mallopt(M_ARENA_MAX, 1);
    const double total = argc > 1 ? std::atof(argv[1]) : 60;
    const double perRun = argc > 2 ? std::atof(argv[2]) : 20;
    support::enterNetworkNamespace();
    QCoreApplication application(argc, argv);
    Told::listen();
    support::makeVethPair(adapter, farEnd);
    std::printf("%6s %4s %9s %9s %7s %5s %9s %10s %8s %6s %7s %8s\n", "min", "run", "RSS KiB", "heap KiB", "threads",
                "files", "results", "frames", "omitted", "gaps", "kernel", "refused");
    const auto begin = Clock::now();
    const auto elapsed = [&] { return std::chrono::duration<double>(Clock::now() - begin).count(); };
    std::optional<Resources> early; ///< from the second run on, nothing may be new
    std::optional<Resources> warm;
    Resources latest{};
    std::uint64_t frames = 0;
    std::uint64_t unexplained = 0;
    int runs = 0;
    for (; (elapsed() < total || runs < 3) && failures == 0; ++runs) {
        auto talker = std::make_unique<StreamTalker>(farEnd, EnduranceHost::macs());
        const std::uint64_t dropsBefore = kernelDrops();
        Losses losses{};
        std::uint64_t results = 0;
        {
            EnduranceHost host(adapter);
            require(host.awaitAll(), "every analysis delivers");
            losses = measure(host, *talker, perRun);
            flapLink();
            require(host.awaitAll(), "every analysis delivers after the link was away");
            frames += talker->sent();
            replaceAdapter(host, talker);
            require(host.awaitAll(), "every analysis delivers after the adapter was away");
            results = host.results();
        }
        frames += talker->sent();
        talker.reset();
        EnduranceHost::runFor(drainTime); // results on their way
        EnduranceHost::dropLastRun();
        latest = Resources::afterRun();
        const std::uint64_t drops = kernelDrops() - dropsBefore;
        const std::uint64_t explained = losses.omitted + drops; // each frame at most one gap
        unexplained += losses.gaps > explained ? losses.gaps - explained : 0;
        require(losses.gaps >= losses.omitted || drops > 0, "every omitted frame is told");
        std::printf("%6.1f %4d %9zu %9zu %7d %5d %9llu %10llu %8llu %6llu %7llu %8llu\n", elapsed() / 60, runs + 1,
                    latest.residentBytes / 1024, latest.heapBytes / 1024, latest.threads, latest.descriptors,
                    static_cast<unsigned long long>(results), static_cast<unsigned long long>(frames),
                    static_cast<unsigned long long>(losses.omitted), static_cast<unsigned long long>(losses.gaps),
                    static_cast<unsigned long long>(drops), static_cast<unsigned long long>(Told::refusals));
        std::fflush(stdout);
        if (!early && runs >= 1) {
            early = latest;
        }
        if (!warm && elapsed() >= warmUp) {
            warm = latest;
        }
    }
    require(unexplained == 0, "no frame was lost that the kernel did not report");
    require(Told::faults == 0, "Qt had nothing to complain about");
    require(latest.threads == 1, "no thread is left behind");
    require(early && latest.descriptors <= early->descriptors, "no descriptor is left behind");
    std::printf("%d runs, %llu frames, %llu lost without the kernel's word\n", runs,
                static_cast<unsigned long long>(frames), static_cast<unsigned long long>(unexplained));
    if (warm) {
        const auto growth = static_cast<long>(latest.residentBytes) - static_cast<long>(warm->residentBytes);
        std::printf("growth since minute 5: %ld KiB\n", growth / 1024);
        require(growth < static_cast<long>(allowedGrowth), "memory does not grow");
    }
    return failures == 0 ? 0 : 1;
}
