#pragma once

#include "monitoring/analyses/AnalysisKind.h"

namespace monitoring {

/// The sound levels of a channel without a gap. They can't do without the external clock.
class SoundLevels : public Analysis {
public:
    static const AnalysisKind description;

    /// @param clock an external one @param timerIsWanted by the others: this is then one that stays on its own
    SoundLevels(Channel channel, ClockSettings clock, bool timerIsWanted);

    const AnalysisKind &kind() const override { return description; }
    std::string unit() const override;
    std::vector<std::string> valueNames() const override;
    unsigned cyclesPerResult() const override;
    unsigned cyclesBefore() const override;
    std::vector<std::string> limits(unsigned bufferSize) const override;
    sonvex::iprocess::IProcessorConfigBase &configure() const override;
    std::unique_ptr<Meter> makeMeter(double window) const override;

private:
    bool timerIsWanted;
};

} // namespace monitoring
