#include "talker/signals/createSignal.h"

#include "common/parseNumber.h"
#include "talker/signals/NoiseSignal.h"
#include "talker/signals/RampSignal.h"
#include "talker/signals/SilenceSignal.h"
#include "talker/signals/SineSignal.h"
#include "talker/signals/SquareSignal.h"
#include "talker/signals/WavSignal.h"

namespace talker {

namespace {

double parseHertz(const std::string &text) {
    return common::parseNumber<double>(text, "frequency of a signal", 0.0, samplesPerSecond / 2.0);
}

/// More than full scale is allowed: the signal is clipped then.
double parseAmplitude(const std::string &text) {
    return common::parseNumber<double>(text, "amplitude of a signal", 0.0, 1000.0);
}

} // namespace

std::unique_ptr<const SignalSource> createSignal(const std::string &text) {
    const std::size_t colon = text.find(':');
    const std::string kind = text.substr(0, colon);
    const bool hasValues = colon != std::string::npos;
    const std::string values = hasValues ? text.substr(colon + 1) : "";

    if (hasValues && (kind == "sine" || kind == "square")) {
        const std::size_t middle = values.find(':');
        if (middle != std::string::npos) {
            const double hertz = parseHertz(values.substr(0, middle));
            const double amplitude = parseAmplitude(values.substr(middle + 1));
            if (kind == "sine") {
                return std::make_unique<SineSignal>(hertz, amplitude);
            }
            return std::make_unique<SquareSignal>(hertz, amplitude);
        }
    } else if (hasValues && kind == "noise") {
        return std::make_unique<NoiseSignal>(parseAmplitude(values));
    } else if (hasValues && kind == "wav") {
        return std::make_unique<WavSignal>(values);
    } else if (text == "ramp") {
        return std::make_unique<RampSignal>();
    } else if (text == "silence") {
        return std::make_unique<SilenceSignal>();
    }
    throw common::Refusal(
        "signal '" + text +
        "' is none of sine:HZ:AMPLITUDE, square:HZ:AMPLITUDE, noise:AMPLITUDE, ramp, silence, wav:FILE");
}

} // namespace talker
