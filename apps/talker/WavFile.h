#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace talker {

/// An audio file of 48 kHz, held in memory and played in a loop; the talker's channels take its channels in turn.
class WavFile {
public:
    /// @throws common::Refusal for a file that cannot be read, is empty or has another sample rate
    explicit WavFile(const std::string &path);

    std::int16_t operator()(std::uint64_t sample, unsigned channel) const {
        return (*codes)[sample % length * channels + channel % channels];
    }

private:
    std::shared_ptr<const std::vector<std::int16_t>> codes; ///< the channels side by side
    std::size_t channels = 0;
    std::size_t length = 0; ///< in samples per channel
};

} // namespace talker
