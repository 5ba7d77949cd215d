#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "live/Traffic.h"
#include "talker/FrameBatch.h"
#include "talker/RawSocket.h"

namespace live {

/// Sends traffic at its rate, a batch a call of the system. Who was kept from sending catches up.
class PacedTalker {
public:
    PacedTalker(const std::string &adapter, const Traffic &traffic);

    /// Returns when so many frames have gone out, the same amount of each stream. @return the frames a second
    double send(std::uint64_t frames);
    /// The same with the time of its sending in each frame. @pre samples of 16 bits
    double sendTimed(std::uint64_t frames);

    std::uint64_t sent() const { return sentFrames; }
    /// Frames that the adapter dropped instead of sending them; they are missing in the sequence.
    std::uint64_t refused() const { return refusedFrames; }

private:
    double send(std::uint64_t frames, bool timed);
    void sendBatch(std::size_t amount, bool timed);

    const Traffic traffic;
    talker::RawSocket socket;
    talker::FrameBatch batch;
    std::vector<std::vector<std::uint8_t>> frames; ///< of the largest batch; each stays with its stream
    std::vector<std::uint8_t> sequences;           ///< by stream
    std::uint64_t sentFrames = 0;
    std::uint64_t refusedFrames = 0;
};

} // namespace live
