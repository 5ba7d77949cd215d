#pragma once

#include <cstdint>

#include <sonvex/SampleFormat.h>

/// The codes of AVTP audio frames (IEEE 1722) for what they declare.
namespace sonvex::aaf {

/// 0xFF, which no frame carries, for a number that stands for no format.
constexpr std::uint8_t codeOf(SampleFormat format) {
    switch (format) {
    case SampleFormat::Int16:
        return 4;
    case SampleFormat::Int24:
        return 3;
    case SampleFormat::Int32:
        return 2;
    case SampleFormat::Float32:
        return 1;
    }
    return 0xFF;
}

/// Bytes of a sample; 0 for codes of no such format.
constexpr unsigned int sampleBytesOf(int formatCode) {
    constexpr unsigned int bytes[] = {0, 4, 4, 3, 2};
    return formatCode < 1 || formatCode > 4 ? 0 : bytes[formatCode];
}

/// Nominal sample rates in Hz by their code; the first one leaves it to the user.
constexpr unsigned int sampleRates[] = {0, 8000, 16000, 32000, 44100, 48000, 88200, 96000, 176400, 192000, 24000};

/// Of the "user" and of codes that stand for nothing: 0.
constexpr unsigned int sampleRateOf(unsigned int code) {
    return code < sizeof sampleRates / sizeof *sampleRates ? sampleRates[code] : 0;
}

} // namespace sonvex::aaf
