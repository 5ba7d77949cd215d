#pragma once

#include "analyser/terminal/Panel.h"
#include "monitoring/meters/WaveformMeter.h"

namespace analyser {

/// The newest curve, at a scale that follows it.
class WaveformPanel : public Panel {
public:
    explicit WaveformPanel(monitoring::WaveformMeter &meter) : meter(meter) {}

    std::string takeHeadline() override;
    std::vector<std::string> draw(std::size_t columns, std::size_t rows) override;

private:
    monitoring::WaveformMeter &meter;
    double scale = 1.0;
};

} // namespace analyser
