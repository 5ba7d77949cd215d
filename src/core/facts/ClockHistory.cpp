#include "core/facts/ClockHistory.h"

#include <algorithm>

namespace facts {

namespace {

constexpr std::int64_t evaluated = 10'000'000; // microseconds
constexpr double leastSeconds = 1.0;           // for a rate
constexpr double unknown = std::numeric_limits<double>::quiet_NaN();

std::uint64_t packed(std::uint32_t high, std::uint32_t low) {
    return std::uint64_t{high} << 32 | low;
}

std::uint32_t limited(std::int64_t microseconds) {
    return static_cast<std::uint32_t>(
        std::clamp<std::int64_t>(microseconds, 0, std::numeric_limits<std::uint32_t>::max()));
}

/// Frames over time, as the slope of the line through all stretches that has the least squares: each stretch may lie
/// where it likes, since nobody knows how far it is from the one before.
class FrameRate {
public:
    void begin() { count = meanTime = meanFrames = latestTime = 0; }
    /// @param time in seconds, @param frames both since the beginning of the stretch
    void add(double time, double frames) {
        ++count;
        const double timeOff = time - meanTime;
        meanTime += timeOff / count;
        meanFrames += (frames - meanFrames) / count;
        timesTime += timeOff * (time - meanTime);
        timesFrames += timeOff * (frames - meanFrames);
        observed += time - latestTime;
        latestTime = time;
    }
    /// By how many millionths frames of so many samples come faster than the rate says.
    double offset(unsigned int samples, int nominalRate) const {
        if (observed < leastSeconds || samples == 0) {
            return unknown;
        }
        return (timesFrames / timesTime * samples / nominalRate - 1) * 1e6;
    }

private:
    double count = 0;
    double meanTime = 0;
    double meanFrames = 0;
    double timesTime = 0;
    double timesFrames = 0;
    double latestTime = 0;
    double observed = 0; ///< in all stretches
};

} // namespace

void ClockHistory::begin() {
    latest = 0;
    distance = 0;
    position = 0;
    latestRestart = false;
    first = true;
    for (Fact<std::uint64_t> *fact : {&arrivals, &untimed, &uncertain, &restarts, &firstKept, &recorded}) {
        fact->set(0);
    }
    startAnew();
}

void ClockHistory::noteMarks(bool valid, bool isUncertain, bool restart) {
    if (!valid) {
        untimed.add(1);
    } else if (isUncertain) {
        uncertain.add(1);
    }
    if (restart != latestRestart) {
        latestRestart = restart;
        if (!first) {
            restarts.add(1);
            startAnew();
        }
    }
}

void ClockHistory::record(std::uint32_t presentation, bool valid) {
    const std::uint64_t index = recorded.get();
    Record &newest = records[index % capacity];
    newest.captured.store(latest, std::memory_order_release);
    newest.counts.store(packed(position, static_cast<std::uint32_t>(arrivals.get())), std::memory_order_release);
    newest.playing.store(packed(presentation, (valid ? Valid : 0U) | (breaks ? Break : 0U)), std::memory_order_release);
    newest.distances.store(first ? packed(std::numeric_limits<std::uint32_t>::max(), 0)
                                 : packed(limited(least), limited(greatest)),
                           std::memory_order_release);
    recorded.set(index + 1);
    first = false;
    breaks = false;
    least = std::numeric_limits<std::int64_t>::max();
    greatest = std::numeric_limits<std::int64_t>::min();
    nextRecord = latest + recordDistance;
}

void ClockHistory::skipped(int frames) {
    position += static_cast<std::uint32_t>(frames);
    // The numbers go round after 256 frames: of a long gap nobody knows how long it was.
    constexpr std::int64_t longestKnownGap = 5'000; // microseconds
    const bool isKnown = distance <= longestKnownGap;
    if (nextRecord == latest + recordDistance) { // the frame has its record already
        Record &own = records[(recorded.get() - 1) % capacity];
        own.counts.store(packed(position, static_cast<std::uint32_t>(arrivals.get())), std::memory_order_release);
        own.playing.store(own.playing.load(std::memory_order_relaxed) | (isKnown ? 0U : Break),
                          std::memory_order_release);
    } else if (!isKnown) {
        startAnew();
    }
}

void ClockHistory::forget() {
    firstKept.set(recorded.get());
    startAnew();
}

std::size_t ClockHistory::copySteps(std::array<Step, capacity> &steps) const {
    const std::uint64_t end = recorded.get();
    const std::uint64_t begin = std::max(firstKept.get(), end < capacity ? 0 : end - capacity);
    std::size_t amount = 0;
    for (std::uint64_t index = begin; index < end; ++index) {
        const Record &record = records[index % capacity];
        const std::int64_t captured = record.captured.load(std::memory_order_acquire);
        const std::uint64_t counts = record.counts.load(std::memory_order_acquire);
        const std::uint64_t playing = record.playing.load(std::memory_order_acquire);
        const std::uint64_t distances = record.distances.load(std::memory_order_acquire);
        steps[amount++] = {captured,
                           static_cast<std::uint32_t>(counts >> 32),
                           static_cast<std::uint32_t>(counts),
                           static_cast<std::uint32_t>(playing >> 32),
                           static_cast<std::uint32_t>(playing),
                           static_cast<std::uint32_t>(distances >> 32),
                           static_cast<std::uint32_t>(distances)};
    }
    // The writer may have come round into the oldest ones meanwhile.
    const std::uint64_t endAfter = recorded.get();
    const std::uint64_t firstWhole = endAfter < capacity ? 0 : endAfter - capacity + 1;
    const std::size_t lost = firstWhole > begin ? std::min<std::size_t>(firstWhole - begin, amount) : 0;
    std::copy(steps.begin() + static_cast<std::ptrdiff_t>(lost), steps.begin() + static_cast<std::ptrdiff_t>(amount),
              steps.begin());
    return amount - lost;
}

sonvex::StreamClock ClockHistory::evaluate(unsigned int samples, int nominalRate) const {
    std::array<Step, capacity> steps; // NOLINT(cppcoreguidelines-pro-type-member-init): filled as far as it counts
    const std::size_t amount = copySteps(steps);
    FrameRate presentation;
    FrameRate arrival;
    std::uint32_t least = std::numeric_limits<std::uint32_t>::max();
    std::uint32_t greatest = 0;
    double arrivedFrames = 0;
    double arrivedTime = 0;          // in microseconds
    const Step *start = nullptr;     // of a stretch
    const Step *lastValid = nullptr; // of it
    const Step *firstValid = nullptr;
    double playingTime = 0; // in seconds, since the first valid one
    const Step *before = nullptr;
    for (const Step *step = steps.data(); step != steps.data() + amount; before = step, ++step) {
        if (step->captured < steps[amount - 1].captured - evaluated) {
            continue;
        }
        if (start != nullptr) { // the distances reach back to the step before
            least = std::min(least, step->least);
            greatest = std::max(greatest, step->greatest);
        }
        if (start == nullptr || (step->marks & Break) != 0) {
            start = step;
            lastValid = firstValid = nullptr;
            presentation.begin();
            arrival.begin();
        } else {
            arrivedFrames += step->arrivals - before->arrivals;
            arrivedTime += static_cast<double>(step->captured - before->captured);
        }
        arrival.add(static_cast<double>(step->captured - start->captured) * 1e-6, step->position - start->position);
        if ((step->marks & Valid) != 0) {
            if (firstValid == nullptr) {
                firstValid = step;
                playingTime = 0;
            } else {
                playingTime += static_cast<std::uint32_t>(step->presentation - lastValid->presentation) * 1e-9;
            }
            presentation.add(playingTime, step->position - firstValid->position);
            lastValid = step;
        }
    }
    sonvex::StreamClock clock;
    clock.timestampsValid = arrivals.get() - std::min(untimed.get(), arrivals.get());
    clock.timestampsUncertain = uncertain.get();
    clock.restarts = restarts.get();
    clock.presentationOffset = presentation.offset(samples, nominalRate);
    clock.arrivalOffset = arrival.offset(samples, nominalRate);
    const bool distancesKnown = arrivedFrames > 0;
    clock.leastDistance = distancesKnown ? least : unknown;
    clock.meanDistance = distancesKnown ? arrivedTime / arrivedFrames : unknown;
    clock.greatestDistance = distancesKnown ? greatest : unknown;
    return clock;
}

} // namespace facts
