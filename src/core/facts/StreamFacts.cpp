#include "core/facts/StreamFacts.h"

#include <algorithm>
#include <cstring>

#include <endian.h>

#include <sonvex/StreamId.h>

#include "core/data/AafCodes.h"

namespace facts {

void StreamFacts::begin() {
    for (Count *count : {&framesTaken, &gaps, &framesLost, &framesRepeated, &nonFiniteSamples}) {
        count->set(0);
    }
    for (Count &count : framesRefused) {
        count.set(0);
    }
    packedDeclaration.set(pack(-1, -1, -1, -1, -1));
    captureTime.set(0);
    steadyTime.set(0);
    tag.set(untagged);
    hasStreamId.set(false);
    clock.begin();
}

void StreamFacts::gapped(std::uint8_t skipped) {
    gaps.add(1);
    framesLost.add(skipped);
    clock.skipped(skipped);
}

void StreamFacts::gappedByLateFrame() {
    gaps.add(1);
    framesRepeated.add(1);
    clock.skipped(-1);
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
    return declaration().format;
}

int StreamFacts::getChannelAmount() const {
    return declaration().channelAmount;
}

int StreamFacts::getDataLength() const {
    return declaration().dataLength;
}

std::int64_t StreamFacts::getCaptureTime() const {
    return captureTime.get();
}

std::int64_t StreamFacts::getSteadyTime() const {
    return steadyTime.get();
}

int StreamFacts::getSampleRate() const {
    const int code = declaration().rateCode;
    return code < 0 ? -1 : static_cast<int>(sonvex::aaf::sampleRateOf(static_cast<unsigned int>(code)));
}

int StreamFacts::getBitDepth() const {
    return declaration().bitDepth;
}

int StreamFacts::getVlanId() const {
    const int newest = tag.get();
    return newest == untagged ? -1 : newest & 0xFFF;
}

int StreamFacts::getVlanPriority() const {
    const int newest = tag.get();
    return newest == untagged ? -1 : newest >> 13;
}

std::string StreamFacts::getStreamId() const {
    if (!hasStreamId.get()) {
        return {};
    }
    sonvex::StreamId::Bytes bytes{};
    const std::uint64_t newest = htole64(streamId.get());
    std::memcpy(bytes.data(), &newest, bytes.size());
    return sonvex::StreamId(bytes).toString();
}

std::uint64_t StreamFacts::getNonFiniteSamples() const {
    return nonFiniteSamples.get();
}

sonvex::StreamClock StreamFacts::getClock() const {
    const Declaration newest = declaration();
    const unsigned int frameBytes =
        static_cast<unsigned int>(std::max(newest.channelAmount, 0)) * sonvex::aaf::sampleBytesOf(newest.format);
    const unsigned int samples =
        frameBytes == 0 || newest.dataLength < 0 ? 0 : static_cast<unsigned int>(newest.dataLength) / frameBytes;
    const int rate = getSampleRate();
    return clock.evaluate(samples, rate > 0 ? rate : 48000);
}

StreamFacts::Declaration StreamFacts::declaration() const {
    const std::uint64_t packed = packedDeclaration.get();
    const auto part = [packed](unsigned shift, unsigned bits) {
        return static_cast<int>(packed >> shift & ((1U << bits) - 1)) - 1;
    };
    return {part(0, 16), part(16, 8), part(24, 12), part(36, 10), part(46, 18)};
}

} // namespace facts
