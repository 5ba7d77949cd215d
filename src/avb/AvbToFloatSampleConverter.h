#pragma once

#include <cstddef>
#include <cstdint>

namespace avb {

/// Turns signed 16-bit big-endian samples into floats with a full scale of +-1.0. Stateless, for any thread.
class AvbToFloatSampleConverter {
public:
    AvbToFloatSampleConverter();

    /// The sample at @p bytes; 0.0, with a warning, for any width but 2 bytes.
    float convertFromBigEndian(const std::uint8_t *bytes, std::uint32_t amountOfBytes) const;

    /**
     * Converts every @p stride th byte position: one channel out of interleaved ones.
     * @param values receives @p amount samples, each as convertFromBigEndian gives it
     */
    void convertBlock(const std::uint8_t *bytes, std::uint32_t bytesPerSample, std::size_t stride, std::size_t amount,
                      float *values) const;

private:
    static constexpr std::uint32_t requiredByteAmount = 2;
    static constexpr float scale = 1.0F / 32768.0F;
};

} // namespace avb
