#pragma once

#include "monitoring/analyses/AnalysisKind.h"

namespace monitoring {

/// The newest samples of a channel.
class Waveform : public Analysis {
public:
    static const AnalysisKind description;

    Waveform(Channel channel, unsigned amount, ClockSettings clock);

    const AnalysisKind &kind() const override { return description; }
    std::string unit() const override;
    std::vector<std::string> limits(unsigned bufferSize) const override;
    sonvex::iprocess::IProcessorConfigBase &configure() const override;
    std::unique_ptr<Meter> makeMeter(double window) const override;
};

} // namespace monitoring
