#pragma once

#include <array>
#include <cstdint>

#include <sonvex/IStreamFacts.h>

#include "core/facts/ClockHistory.h"
#include "core/facts/Fact.h"

namespace facts {

/// Written on capture threads, one at a time, where the reception decides; read on the host's. begin() before the
/// first.
class StreamFacts : public sonvex::IStreamFacts {
public:
    /// Everything as before the first frame.
    void begin();

    /// The first of each frame. @param times microseconds since 1970, @param newSteadyTime nanoseconds
    /// @param frameTag as UntaggedFrame has it
    void arrived(const FrameTimes &times, std::int64_t newSteadyTime, int frameTag) {
        captureTime.set(times.captured);
        steadyTime.set(newSteadyTime);
        tag.set(frameTag);
        clock.arrived(times);
    }
    /// Of a frame that has a valid one. @param newStreamId whose lowest byte is the first of the frame
    void identified(std::uint64_t newStreamId) {
        streamId.set(newStreamId);
        hasStreamId.set(true);
    }
    /// What a frame says of itself, format and rate by their codes; -1 for what it ends before.
    void declared(int format, int rateCode, int channelAmount, int bitDepth, int dataLength) {
        const std::uint64_t newest = pack(format, rateCode, channelAmount, bitDepth, dataLength);
        if (newest != packedDeclaration.get()) {
            packedDeclaration.set(newest);
            clock.forget(); // what other frames implied
        }
    }
    void taken() { framesTaken.add(1); }
    /// Whether a frame that leaves out so many numbers, in 8 bits, is rather one that was heard or missed before.
    static bool isLate(std::uint8_t skipped) { return skipped > UINT8_MAX - longestDelay; }
    /// @param skipped the numbers between those of the newest frame before and of the one that came, which is not late
    void gapped(std::uint8_t skipped);
    void gappedByLateFrame();
    void refused(sonvex::FrameRefusal cause);
    void replacedNonFinite(std::uint64_t samples) { nonFiniteSamples.add(samples); }

    std::uint64_t getFramesTaken() const override;
    std::uint64_t getGaps() const override;
    std::uint64_t getFramesLost() const override;
    std::uint64_t getFramesRepeated() const override;
    std::uint64_t getFramesRefused(sonvex::FrameRefusal cause) const override;
    std::uint64_t getFramesRefused() const override;
    int getFormat() const override;
    int getChannelAmount() const override;
    int getDataLength() const override;
    std::int64_t getCaptureTime() const override;
    std::int64_t getSteadyTime() const override;
    int getSampleRate() const override;
    int getBitDepth() const override;
    int getVlanId() const override;
    int getVlanPriority() const override;
    std::string getStreamId() const override;
    std::uint64_t getNonFiniteSamples() const override;
    sonvex::StreamClock getClock() const override;

private:
    using Count = Fact<std::uint64_t>;

    /// So many frames back a number may be without counting as nearly a round of lost ones.
    static constexpr int longestDelay = 16;
    static constexpr int untagged = -1;

    /// As it is kept: one number, which is written at once.
    struct Declaration {
        int format;
        int rateCode;
        int channelAmount;
        int bitDepth;
        int dataLength;
    };

    static std::uint64_t pack(int format, int rateCode, int channelAmount, int bitDepth, int dataLength) {
        const auto part = [](int value, unsigned shift) { return static_cast<std::uint64_t>(value + 1) << shift; };
        return part(format, 0) | part(rateCode, 16) | part(channelAmount, 24) | part(bitDepth, 36) |
               part(dataLength, 46);
    }
    Declaration declaration() const;

    Count framesTaken;
    Count gaps;
    Count framesLost;
    Count framesRepeated;
    std::array<Count, 6> framesRefused; ///< by cause
    Count nonFiniteSamples;
    Fact<std::uint64_t> packedDeclaration;
    Fact<std::int64_t> captureTime;
    Fact<std::int64_t> steadyTime;
    Fact<int> tag{untagged};
    Fact<std::uint64_t> streamId;
    Fact<bool> hasStreamId{false};
    ClockHistory clock;
};

} // namespace facts
