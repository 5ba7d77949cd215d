#pragma once

#include <string>
#include <vector>

#include "talker/signals/SignalSource.h"

namespace talker {

/// An audio file of 48 kHz, held in memory and played in a loop; the talker's channels take its channels in turn.
class WavSignal : public SignalSource {
public:
    /// @throws common::Refusal for a file that cannot be read, is empty or has another sample rate
    explicit WavSignal(const std::string &path);

    std::int16_t code(std::uint64_t sample, unsigned channel) const override {
        return codes[sample % length * channels + channel % channels];
    }

private:
    std::vector<std::int16_t> codes; ///< the channels side by side
    std::size_t channels = 0;
    std::size_t length = 0; ///< in samples per channel
};

} // namespace talker
