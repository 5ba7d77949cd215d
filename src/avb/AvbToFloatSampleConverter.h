#pragma once

#include <cstddef>
#include <cstdint>

#include <sonvex/SampleFormat.h>

namespace avb {

/// Turns big-endian samples into floats with a full scale of +-1.0. Stateless, for any thread.
class AvbToFloatSampleConverter {
public:
    AvbToFloatSampleConverter();

    /// The signed 16-bit sample at @p bytes; 0.0, with a warning, for any width but 2 bytes.
    float convertFromBigEndian(const std::uint8_t *bytes, std::uint32_t amountOfBytes) const;

    /**
     * All samples of a frame, those of all channels at one time side by side.
     *
     * @param channels, @param samplesPerChannel 1 at least
     * @param values receives the samples channel by channel
     * @return how many floats were no finite numbers, which became 0.0
     */
    std::size_t convertFrame(const std::uint8_t *bytes, sonvex::SampleFormat format, std::size_t channels,
                             std::size_t samplesPerChannel, float *values) const;

private:
    static constexpr std::uint32_t requiredByteAmount = 2;
};

} // namespace avb
