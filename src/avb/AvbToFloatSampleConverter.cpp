#include "avb/AvbToFloatSampleConverter.h"

#include "core/logging/Log.h"
#include "kernels/kernels.h"

namespace avb {

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
    float value = 0.0F;
    convertFrame(bytes, sonvex::SampleFormat::Int16, 1, 1, &value);
    return value;
}

std::size_t AvbToFloatSampleConverter::convertFrame(const std::uint8_t *bytes, sonvex::SampleFormat format,
                                                    std::size_t channels, std::size_t samplesPerChannel,
                                                    float *values) const {
    const int width = static_cast<int>(channels);
    const int length = static_cast<int>(samplesPerChannel);
    int replaced = 0;
    switch (format) {
    case sonvex::SampleFormat::Int16:
        sonvexDeinterleave_16s32f(bytes, width, length, values, length);
        break;
    case sonvex::SampleFormat::Int24:
        sonvexDeinterleave_24s32f(bytes, width, length, values, length);
        break;
    case sonvex::SampleFormat::Int32:
        sonvexDeinterleave_32s32f(bytes, width, length, values, length);
        break;
    case sonvex::SampleFormat::Float32:
        sonvexDeinterleave_32f(bytes, width, length, values, length, &replaced);
        break;
    }
    return static_cast<std::size_t>(replaced);
}

} // namespace avb
