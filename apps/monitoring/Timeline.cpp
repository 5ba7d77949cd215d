#include "monitoring/Timeline.h"

#include <algorithm>
#include <utility>

#include <sonvex/IStreamFacts.h>

#include "common/AafFormat.h"

namespace monitoring {

Timeline::Timeline(const sonvex::IStreamFacts &facts, const StreamSettings &stream, std::uint64_t memory)
    : facts(facts), samplesPerPacket(stream.samplesPerChannel), amountIsDeclared(stream.samplesPerChannel == 0),
      sampleRate(stream.sampleRate), memory(memory) {}

void Timeline::update() {
    // Frames may arrive meanwhile: what is read around the losses makes a gap wider, and none is overlooked.
    if (amountIsDeclared) {
        readAmount();
    }
    const std::uint64_t earlier = std::exchange(atLosses, positionAt(facts.getFramesTaken()));
    const std::uint64_t newLosses = facts.getGaps() + facts.getFramesRefused();
    const std::chrono::microseconds captured(facts.getCaptureTime());
    const std::uint64_t taken = facts.getFramesTaken();
    if (taken != frames) { // refused frames are captured, too
        newest = captured;
    }
    position = positionAt(taken);
    frames = taken;
    if (std::exchange(losses, newLosses) != newLosses) {
        gaps.push_back({earlier, position});
    }
    while (!gaps.empty() && gaps.front().before + memory < position) {
        gaps.pop_front();
    }
}

/// From the newest frame, which may be one that was refused: then the amount before it holds on.
void Timeline::readAmount() {
    const auto *format = common::find(common::aafFormats, &common::AafFormat::code, facts.getFormat());
    const int channels = facts.getChannelAmount();
    const int length = facts.getDataLength();
    const int block = format != nullptr ? channels * static_cast<int>(format->bytes) : 0;
    if (block > 0 && length > 0 && length % block == 0) {
        samplesPerPacket = static_cast<unsigned>(length / block);
    }
}

std::uint64_t Timeline::positionAt(std::uint64_t framesTaken) const {
    return position + (framesTaken - frames) * samplesPerPacket;
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
