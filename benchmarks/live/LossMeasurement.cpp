#include "live/LossMeasurement.h"

#include <chrono>
#include <cstdio>
#include <thread>

#include <pthread.h>
#include <sched.h>

#include "live/BusyLoops.h"
#include "live/LibraryHost.h"
#include "live/PacedTalker.h"

namespace live {

namespace {

constexpr unsigned measured = 5; // seconds
constexpr auto settleTime = std::chrono::milliseconds(300);
constexpr unsigned clockAmount = 480;

/// Frames come from a network before everything else that a machine does, so their sender goes first if the system lets
/// it. For its lifetime, of this thread alone.
class RealTimePriority {
public:
    RealTimePriority() : granted(set(SCHED_RR, 1)) {}
    ~RealTimePriority() { set(SCHED_OTHER, 0); }
    RealTimePriority(const RealTimePriority &) = delete;
    RealTimePriority &operator=(const RealTimePriority &) = delete;

    const bool granted;

private:
    static bool set(int policy, int priority) {
        const sched_param parameters = {priority};
        return pthread_setschedparam(pthread_self(), policy, &parameters) == 0;
    }
};

unsigned long long number(std::uint64_t value) {
    return value;
}

} // namespace

int LossMeasurement::expectedSeconds() const {
    return static_cast<int>(rows.size() * (measured + 1));
}

void LossMeasurement::measure(const Link &link) {
    for (Row &row : rows) {
        Traffic traffic{{8, 6}};
        traffic.rate = row.wanted;
        traffic.streams = row.wanted / Traffic::classA;
        PacedTalker talker(link.farEnd, traffic);
        const LibraryHost host(link.adapter, traffic, clockAmount);
        const BusyLoops load;
        const DropsOnTheWay before = DropsOnTheWay::sum(link.adapter, link.farEnd);
        {
            const RealTimePriority first;
            senderFirst = first.granted;
            row.reached = talker.send(std::uint64_t{measured} * row.wanted);
        }
        std::this_thread::sleep_for(settleTime);
        const DropsOnTheWay after = DropsOnTheWay::sum(link.adapter, link.farEnd);
        row.onTheWay = {after.adapters - before.adapters, after.backlog - before.backlog};
        row.sent = talker.sent();
        row.refused = talker.refused();
        row.taken = host.taken();
        row.lost = host.lost();
        row.kernelDrops = host.kernelDrops();
        row.waited = host.threadTime().waitedMilliseconds();
    }
}

void LossMeasurement::print() const {
    std::printf("\nframes lost beside a busy loop on each core: 8x6 int16, a stream for each %u frames/s, %u s each\n"
                "missing: sent, not taken by the library, goal 0; lost: by the sequence, which tells a gap modulo 256\n"
                "and does not count the frame behind it; dropped: by the kernel, as the capture's ring was full;\n"
                "adapters, refused, backlog: on the way to any capture, counted by the adapters, by the sender, and\n"
                "by the queues of received frames; waited: how long the capture had work, but no core\n"
                "the sender had %s priority\n"
                "%9s %9s %9s %9s %8s %6s %8s %8s %7s %8s %9s\n",
                Traffic::classA, measured, senderFirst ? "real-time" : "normal", "frames/s", "reached", "sent", "taken",
                "missing", "lost", "dropped", "adapters", "refused", "backlog", "waited ms");
    for (const Row &row : rows) {
        std::printf("%9u %9.0f %9llu %9llu %8lld %6llu %8llu %8llu %7llu %8llu %9.0f%s\n", row.wanted, row.reached,
                    number(row.sent), number(row.taken), static_cast<long long>(row.sent - row.taken), number(row.lost),
                    number(row.kernelDrops), number(row.onTheWay.adapters), number(row.refused),
                    number(row.onTheWay.backlog), row.waited,
                    row.reached < 0.98 * row.wanted ? "  this machine could not send as fast" : "");
    }
}

} // namespace live
