#include "talker/Signal.h"

#include <algorithm>
#include <cmath>

#include "common/Text.h"
#include "common/parseNumber.h"
#include "talker/WavFile.h"

namespace talker {

namespace {

Signal sine(double hertz, double amplitude) {
    constexpr double pi = 3.14159265358979323846;
    const auto code = [=](std::uint64_t sample, unsigned /*channel*/) {
        return toCode(amplitude * std::sin(2.0 * pi * hertz * static_cast<double>(sample) / samplesPerSecond));
    };
    return {code, false};
}

Signal square(double hertz, double amplitude) {
    const auto code = [=](std::uint64_t sample, unsigned /*channel*/) {
        const double periods = hertz * static_cast<double>(sample) / samplesPerSecond;
        return toCode(periods - std::floor(periods) < 0.5 ? amplitude : -amplitude);
    };
    return {code, false};
}

Signal noise(double amplitude) {
    const auto code = [=](std::uint64_t sample, unsigned channel) {
        // SplitMix64 turns neighbouring seeds into unrelated numbers.
        std::uint64_t bits = (sample * 1024 + channel + 1) * 0x9e3779b97f4a7c15U;
        bits = (bits ^ (bits >> 30)) * 0xbf58476d1ce4e5b9U;
        bits = (bits ^ (bits >> 27)) * 0x94d049bb133111ebU;
        bits ^= bits >> 31;
        const double unit = static_cast<double>(bits >> 11) / 9007199254740992.0; // 53 bits over 2^53
        return toCode(amplitude * (2.0 * unit - 1.0));
    };
    return {code, true};
}

Signal ramp() {
    const auto code = [](std::uint64_t sample, unsigned channel) {
        return static_cast<std::int16_t>(sample + std::uint64_t{1000} * channel);
    };
    return {code, true};
}

Signal silence() {
    return {[](std::uint64_t /*sample*/, unsigned /*channel*/) { return std::int16_t{0}; }, false};
}

double parseHertz(const std::string &text) {
    return common::parseNumber<double>(text, "frequency of a signal", 0.0, samplesPerSecond / 2.0);
}

/// More than full scale is allowed: the signal is clipped then.
double parseAmplitude(const std::string &text) {
    return common::parseNumber<double>(text, "amplitude of a signal", 0.0, 1000.0);
}

} // namespace

Signal Signal::parse(const std::string &text) {
    const auto parts = text::split(text, ':');
    const std::string &kind = parts.front();
    if (kind == "sine" && parts.size() == 3) {
        return sine(parseHertz(parts[1]), parseAmplitude(parts[2]));
    }
    if (kind == "square" && parts.size() == 3) {
        return square(parseHertz(parts[1]), parseAmplitude(parts[2]));
    }
    if (kind == "noise" && parts.size() == 2) {
        return noise(parseAmplitude(parts[1]));
    }
    if (kind == "wav" && parts.size() > 1) {
        return {WavFile(text.substr(kind.size() + 1)), true};
    }
    if (text == "ramp") {
        return ramp();
    }
    if (text == "silence") {
        return silence();
    }
    throw common::Refusal(
        "signal '" + text +
        "' is none of sine:HZ:AMPLITUDE, square:HZ:AMPLITUDE, noise:AMPLITUDE, ramp, silence, wav:FILE");
}

std::int16_t toCode(double value) {
    return static_cast<std::int16_t>(std::lround(std::clamp(value * 32768.0, -32768.0, 32767.0)));
}

} // namespace talker
