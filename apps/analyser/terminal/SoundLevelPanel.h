#pragma once

#include "analyser/terminal/Panel.h"
#include "monitoring/meters/SoundLevelMeter.h"

namespace analyser {

/// A bar for each level, with the highest value and the mean of the energies.
class SoundLevelPanel : public Panel {
public:
    SoundLevelPanel(const monitoring::SoundLevelMeter &meter, SoundLevelUnit unit) : meter(meter), unit(unit) {}

    std::string takeHeadline() override;
    std::vector<std::string> draw(std::size_t columns, std::size_t rows) override;
    bool hasLine() const override { return true; }
    /// The fast levels, where there is room for them, and a bar of that without a weighting.
    std::string drawLine(const std::string &title, std::size_t columns) override;

private:
    /// "-3.0  max -3.0  eq -3.1"
    std::string describe(const monitoring::SoundLevelMeter::Reading &reading) const;

    const monitoring::SoundLevelMeter &meter;
    SoundLevelUnit unit;
};

} // namespace analyser
