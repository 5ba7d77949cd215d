#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "common/AafFormat.h"

namespace talker {

/// What an AAF frame holds, and declares.
struct FrameFormat {
    static constexpr std::size_t maxDataLength = 65535;
    static constexpr unsigned maxChannels = 1023;
    static constexpr unsigned maxSamplesPerChannel = maxDataLength / 2;

    unsigned channels;
    unsigned samplesPerChannel;
    common::AafFormat sample = common::aafFormats[0]; ///< int16
    unsigned rate = 48000;                            ///< one of common::aafRates

    /// Bytes of the samples in a frame.
    std::size_t dataLength() const { return std::size_t{sample.bytes} * channels * samplesPerChannel; }

    /// @param what names the option in the refusal of any other name
    static common::AafFormat parseFormat(const std::string &name, const std::string &what);
    /// @param what names the option in the refusal of a rate that has no code
    static unsigned parseRate(const std::string &hertz, const std::string &what);
};

} // namespace talker
