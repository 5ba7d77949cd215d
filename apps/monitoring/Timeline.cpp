#include "monitoring/Timeline.h"

#include <algorithm>
#include <utility>

#include <sonvex/IStreamFacts.h>

#include "monitoring/analyses/Settings.h"

namespace monitoring {

Timeline::Timeline(const sonvex::IStreamFacts &facts, unsigned samplesPerPacket, std::uint64_t memory)
    : facts(facts), samplesPerPacket(samplesPerPacket), memory(memory) {}

void Timeline::update() {
    // Frames may arrive meanwhile: what is read around the losses makes a gap wider, and none is overlooked.
    const std::uint64_t earlier = std::exchange(atLosses, facts.getFramesTaken() * samplesPerPacket);
    const std::uint64_t newLosses = facts.getGaps() + facts.getFramesRefused();
    const std::chrono::microseconds captured(facts.getCaptureTime());
    const std::uint64_t taken = facts.getFramesTaken() * samplesPerPacket;
    if (std::exchange(position, taken) != taken) { // refused frames are captured, too
        newest = captured;
    }
    if (std::exchange(losses, newLosses) != newLosses) {
        gaps.push_back({earlier, position});
    }
    while (!gaps.empty() && gaps.front().before + memory < position) {
        gaps.pop_front();
    }
}

std::optional<std::chrono::system_clock::time_point> Timeline::timeOf(std::uint64_t sample) const {
    if (position == 0) {
        return std::nullopt;
    }
    const double distance = (static_cast<double>(sample) - static_cast<double>(position)) / sampleRate; // seconds
    const std::chrono::system_clock::time_point origin;
    return origin + newest + std::chrono::microseconds(static_cast<std::int64_t>(distance * 1e6));
}

bool Timeline::hasGap(std::uint64_t first, std::uint64_t last) const {
    return std::any_of(gaps.begin(), gaps.end(),
                       [&](const Gap &gap) { return gap.before >= first && gap.after < last; });
}

} // namespace monitoring
