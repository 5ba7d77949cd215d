#pragma once

#include <array>
#include <cstdint>

#include <sonvex/IStreamFacts.h>

#include "core/facts/Fact.h"

namespace facts {

/// Written on capture threads, one at a time, where the reception decides; read on the host's. begin() before the
/// first.
class StreamFacts : public sonvex::IStreamFacts {
public:
    /// Everything as before the first frame.
    void begin();

    /// @param captureTime microseconds since 1970, @param steadyTime nanoseconds
    void arrived(std::int64_t newCaptureTime, std::int64_t newSteadyTime) {
        captureTime.set(newCaptureTime);
        steadyTime.set(newSteadyTime);
    }
    /// -1 for what the frame ends before.
    void declared(int format, int channelAmount, int dataLength) {
        declaration.set(std::uint64_t{static_cast<std::uint16_t>(format)} << 48 |
                        std::uint64_t{static_cast<std::uint16_t>(channelAmount)} << 32 |
                        static_cast<std::uint32_t>(dataLength));
    }
    void taken() { framesTaken.add(1); }
    /// Whether a frame that leaves out so many numbers, in 8 bits, is rather one that was heard or missed before.
    static bool isLate(std::uint8_t skipped) { return skipped > UINT8_MAX - longestDelay; }
    /// @param skipped the numbers between those of the newest frame before and of the one that came, which is not late
    void gapped(std::uint8_t skipped);
    void gappedByLateFrame();
    void refused(sonvex::FrameRefusal cause);

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

private:
    using Count = Fact<std::uint64_t>;

    /// So many frames back a number may be without counting as nearly a round of lost ones.
    static constexpr int longestDelay = 16;

    Count framesTaken;
    Count gaps;
    Count framesLost;
    Count framesRepeated;
    std::array<Count, 4> framesRefused;                 ///< by cause
    Fact<std::uint64_t> declaration{~std::uint64_t{0}}; ///< format, channel amount and data length, written at once
    Fact<std::int64_t> captureTime;
    Fact<std::int64_t> steadyTime;
};

} // namespace facts
