#include "monitoring/analyses/Waveform.h"

#include <utility>

#include <sonvex/IWaveformConfig.h>

#include "common/parseNumber.h"
#include "monitoring/analyses/limits.h"
#include "monitoring/meters/WaveformMeter.h"

namespace monitoring {

namespace {

std::shared_ptr<const Analysis> parse(const AnalysisValue &value) {
    const auto &parts = value.parts({2});
    const auto channel = value.channel();
    const auto amount = common::parseNumber<unsigned>(parts[1], value.numberTitle("amount"), 1, maximumAmount);
    return std::make_shared<Waveform>(channel, amount, value.clock());
}

} // namespace

const AnalysisKind Waveform::description = {"waveform", "waveforms", "CHANNEL:AMOUNT[@STREAM]",
                                            "CHANNEL:AMOUNT[@STREAM]: a curve of AMOUNT samples of a channel, counted "
                                            "from 0, of a stream, as --stream names it, or of the first "
                                            "one. May be repeated, once for each channel.",
                                            parse};

Waveform::Waveform(Channel channel, unsigned amount, ClockSettings clock)
    : Analysis(std::move(channel), amount, clock) {}

std::string Waveform::unit() const {
    return "full scale of +-1.0";
}

std::vector<std::string> Waveform::limits(unsigned bufferSize) const {
    if (bufferSize >= amount()) {
        return {};
    }
    return {bufferLimit(bufferSize) + "curves of more are cut to that"};
}

sonvex::iprocess::IProcessorConfigBase &Waveform::configure() const {
    using Config = sonvex::iprocess::IWaveformConfig;
    return clock().internal ? Config::createInstance(description.name, amount(), clock().period)
                            : Config::createInstance(description.name, amount());
}

std::unique_ptr<Meter> Waveform::makeMeter(double /*window*/) const {
    return std::make_unique<WaveformMeter>();
}

} // namespace monitoring
