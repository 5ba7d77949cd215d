#include "talker/ChannelSignals.h"

#include <algorithm>
#include <iterator>

namespace talker {

ChannelSignals::ChannelSignals(const std::vector<std::string> &texts) {
    std::transform(texts.begin(), texts.end(), std::back_inserter(signals), Signal::parse);
}

void ChannelSignals::fill(AafFrame &frame, std::uint64_t firstSample) const {
    for (unsigned sample = 0; sample < frame.getSamplesPerChannel(); ++sample) {
        std::int16_t code = 0;
        for (unsigned channel = 0; channel < frame.getChannels(); ++channel) {
            const bool hasItsOwn = channel < signals.size();
            const Signal &signal = hasItsOwn ? signals[channel] : signals.back();
            if (hasItsOwn || signal.differsByChannel) {
                code = signal.code(firstSample + sample, channel);
            }
            frame.setSample(sample, channel, code);
        }
    }
}

} // namespace talker
