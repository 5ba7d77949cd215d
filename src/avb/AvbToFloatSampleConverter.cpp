#include "avb/AvbToFloatSampleConverter.h"

#include "core/logging/Log.h"

namespace avb {

namespace {

float bigEndianToFloat(const std::uint8_t *bytes, float scale) {
    const auto code = static_cast<std::int16_t>((bytes[0] << 8) | bytes[1]);
    return static_cast<float>(code) * scale;
}

} // namespace

AvbToFloatSampleConverter::AvbToFloatSampleConverter() {
    logging::debug("avb::AvbToFloatSampleConverter::AvbToFloatSampleConverter", "Initialized!");
}

float AvbToFloatSampleConverter::convertFromBigEndian(const std::uint8_t *bytes, std::uint32_t amountOfBytes) const {
    if (amountOfBytes != requiredByteAmount) {
        logging::warning("avb::AvbToFloatSampleConverter::convertFromBigEndian",
                         "Cannot convert array data to float. Wrong array size: ", amountOfBytes,
                         " (required: ", requiredByteAmount);
        return 0.0F;
    }
    return bigEndianToFloat(bytes, scale);
}

void AvbToFloatSampleConverter::convertBlock(const std::uint8_t *bytes, std::uint32_t bytesPerSample,
                                             std::size_t stride, std::size_t amount, float *values) const {
    if (bytesPerSample != requiredByteAmount) {
        for (std::size_t i = 0; i < amount; ++i) {
            values[i] = convertFromBigEndian(bytes + i * stride, bytesPerSample);
        }
        return;
    }
    for (std::size_t i = 0; i < amount; ++i) {
        values[i] = bigEndianToFloat(bytes + i * stride, scale);
    }
}

} // namespace avb
