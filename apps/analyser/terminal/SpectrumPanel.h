#pragma once

#include "analyser/terminal/Panel.h"
#include "monitoring/meters/SpectrumMeter.h"

namespace analyser {

/// The newest spectrum as a line and the highest value of each bin so far as dots, over a logarithmic frequency axis.
class SpectrumPanel : public Panel {
public:
    SpectrumPanel(const monitoring::SpectrumMeter &meter, SoundLevelUnit unit) : meter(meter), unit(unit) {}

    std::string takeHeadline() override;
    std::vector<std::string> draw(std::size_t columns, std::size_t rows) override;

private:
    const monitoring::SpectrumMeter &meter;
    SoundLevelUnit unit;
};

} // namespace analyser
