#include "core/facts/StreamFacts.h"

namespace facts {

void StreamFacts::begin() {
    for (Count *count : {&framesTaken, &gaps, &framesLost, &framesRepeated}) {
        count->set(0);
    }
    for (Count &count : framesRefused) {
        count.set(0);
    }
    declared(-1, -1, -1);
    arrived(0, 0);
}

void StreamFacts::gapped(std::uint8_t skipped) {
    gaps.add(1);
    framesLost.add(skipped);
}

void StreamFacts::gappedByLateFrame() {
    gaps.add(1);
    framesRepeated.add(1);
}

void StreamFacts::refused(sonvex::FrameRefusal cause) {
    framesRefused[static_cast<std::size_t>(cause)].add(1);
}

std::uint64_t StreamFacts::getFramesTaken() const {
    return framesTaken.get();
}

std::uint64_t StreamFacts::getGaps() const {
    return gaps.get();
}

std::uint64_t StreamFacts::getFramesLost() const {
    return framesLost.get();
}

std::uint64_t StreamFacts::getFramesRepeated() const {
    return framesRepeated.get();
}

std::uint64_t StreamFacts::getFramesRefused(sonvex::FrameRefusal cause) const {
    return framesRefused.at(static_cast<std::size_t>(cause)).get();
}

std::uint64_t StreamFacts::getFramesRefused() const {
    std::uint64_t all = 0;
    for (const Count &count : framesRefused) {
        all += count.get();
    }
    return all;
}

int StreamFacts::getFormat() const {
    return static_cast<std::int16_t>(declaration.get() >> 48);
}

int StreamFacts::getChannelAmount() const {
    return static_cast<std::int16_t>(declaration.get() >> 32);
}

int StreamFacts::getDataLength() const {
    return static_cast<std::int32_t>(declaration.get());
}

std::int64_t StreamFacts::getCaptureTime() const {
    return captureTime.get();
}

std::int64_t StreamFacts::getSteadyTime() const {
    return steadyTime.get();
}

} // namespace facts
