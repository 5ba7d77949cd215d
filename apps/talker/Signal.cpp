#include "talker/Signal.h"

#include <cmath>
#include <memory>
#include <numeric>
#include <utility>
#include <vector>

#include "common/Text.h"
#include "common/parseNumber.h"
#include "talker/WavFile.h"

namespace talker {

namespace {

/// The samples after which a sine repeats, where it does so within a second as with whole hertz; 0 otherwise.
std::uint64_t wholePeriod(double hertz, unsigned rate) {
    return hertz == std::floor(hertz) ? rate / std::gcd(static_cast<unsigned>(hertz), rate) : 0;
}

/// What repeats comes from a table: that is fast, and the phase has no error, however late the sample.
Signal sine(double hertz, double amplitude, unsigned rate) {
    constexpr double pi = 3.14159265358979323846;
    const auto value = [=](std::uint64_t sample, unsigned /*channel*/) {
        return amplitude * std::sin(2.0 * pi * hertz * static_cast<double>(sample) / rate);
    };
    const std::uint64_t period = wholePeriod(hertz, rate);
    if (period == 0) {
        return {value, false};
    }
    std::vector<double> values;
    for (std::uint64_t sample = 0; sample < period; ++sample) {
        values.push_back(value(sample, 0));
    }
    const auto table = std::make_shared<const std::vector<double>>(std::move(values));
    return {[table](std::uint64_t sample, unsigned /*channel*/) { return (*table)[sample % table->size()]; }, false};
}

Signal square(double hertz, double amplitude, unsigned rate) {
    const auto value = [=](std::uint64_t sample, unsigned /*channel*/) {
        const double periods = hertz * static_cast<double>(sample) / rate;
        return periods - std::floor(periods) < 0.5 ? amplitude : -amplitude;
    };
    return {value, false};
}

Signal noise(double amplitude) {
    const auto value = [=](std::uint64_t sample, unsigned channel) {
        // SplitMix64 turns neighbouring seeds into unrelated numbers.
        std::uint64_t bits = (sample * 1024 + channel + 1) * 0x9e3779b97f4a7c15U;
        bits = (bits ^ (bits >> 30)) * 0xbf58476d1ce4e5b9U;
        bits = (bits ^ (bits >> 27)) * 0x94d049bb133111ebU;
        bits ^= bits >> 31;
        const double unit = static_cast<double>(bits >> 11) / 9007199254740992.0; // 53 bits over 2^53
        return amplitude * (2.0 * unit - 1.0);
    };
    return {value, true};
}

Signal ramp() {
    const auto value = [](std::uint64_t sample, unsigned channel) {
        return static_cast<std::int16_t>(sample + std::uint64_t{1000} * channel) / 32768.0;
    };
    return {value, true};
}

Signal silence() {
    return {[](std::uint64_t /*sample*/, unsigned /*channel*/) { return 0.0; }, false};
}

double parseHertz(const std::string &text, unsigned rate) {
    return common::parseNumber<double>(text, "frequency of a signal", 0.0, rate / 2.0);
}

/// More than full scale is allowed: integers clip the signal then.
double parseAmplitude(const std::string &text) {
    return common::parseNumber<double>(text, "amplitude of a signal", 0.0, 1000.0);
}

} // namespace

Signal Signal::parse(const std::string &text, unsigned rate) {
    const auto parts = text::split(text, ':');
    const std::string &kind = parts.front();
    if (kind == "sine" && parts.size() == 3) {
        return sine(parseHertz(parts[1], rate), parseAmplitude(parts[2]), rate);
    }
    if (kind == "square" && parts.size() == 3) {
        return square(parseHertz(parts[1], rate), parseAmplitude(parts[2]), rate);
    }
    if (kind == "noise" && parts.size() == 2) {
        return noise(parseAmplitude(parts[1]));
    }
    if (kind == "wav" && parts.size() > 1) {
        return {WavFile(text.substr(kind.size() + 1), rate), true};
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

} // namespace talker
