#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace talker {

/// An audio file, held in memory with all of its resolution and played in a loop; the talker's channels take its
/// channels in turn.
class WavFile {
public:
    /// @throws common::Refusal for a file that cannot be read, is empty or has another sample rate
    WavFile(const std::string &path, unsigned rate);

    double operator()(std::uint64_t sample, unsigned channel) const {
        return (*values)[sample % length * channels + channel % channels];
    }

private:
    std::shared_ptr<const std::vector<double>> values; ///< the channels side by side
    std::size_t channels = 0;
    std::size_t length = 0; ///< in samples per channel
};

} // namespace talker
