#include "talker/ChannelSignals.h"

namespace talker {

ChannelSignals::ChannelSignals(const std::vector<std::string> &texts, unsigned rate) {
    for (const std::string &text : texts) {
        signals.push_back(Signal::parse(text, rate));
    }
}

void ChannelSignals::fill(AafFrame &frame, std::uint64_t firstSample, unsigned firstChannel) const {
    const unsigned channels = frame.getFormat().channels;
    const unsigned samples = frame.getFormat().samplesPerChannel;
    for (unsigned sample = 0; sample < samples; ++sample) {
        double value = 0.0;
        for (unsigned channel = 0; channel < channels; ++channel) {
            const unsigned number = firstChannel + channel;
            const bool hasItsOwn = number < signals.size();
            const Signal &signal = hasItsOwn ? signals[number] : signals.back();
            if (channel == 0 || hasItsOwn || signal.differsByChannel) {
                value = signal.value(firstSample + sample, number);
            }
            frame.setSample(sample, channel, value);
        }
    }
}

} // namespace talker
