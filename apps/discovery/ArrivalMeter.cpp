#include "discovery/ArrivalMeter.h"

namespace discovery {

namespace {

constexpr double stretch = 50e6;      // ns
constexpr double greatestStep = 15e6; // ns, less than the time of all numbers that the sequence has
constexpr double least = 0.5e9;       // ns

} // namespace

ArrivalMeter::ArrivalMeter(double period) : period(period), rate(period, greatestStep) {}

void ArrivalMeter::breakOff() {
    first.reset();
    rate.breakOff();
}

/// Against the first frame of the stretch, ns.
double ArrivalMeter::lateness(const Frame &frame) const {
    return static_cast<double>(frame.time - first->time) -
           static_cast<double>(frame.position - first->position) * period;
}

void ArrivalMeter::add(std::uint64_t position, std::int64_t time) {
    const Frame frame{position, time};
    if (first && static_cast<double>(position - first->position) * period >= stretch) {
        (void)rate.add(earliest.position, earliest.time);
        first.reset();
    }
    if (!first) {
        first = earliest = frame;
    } else if (lateness(frame) < lateness(earliest)) {
        earliest = frame;
    }
}

std::optional<double> ArrivalMeter::ppm() const {
    return rate.ppm(least);
}

} // namespace discovery
