#pragma once

#include "analyser/Panel.h"

namespace analyser {

/// The newest curve, at a scale that follows it.
class WaveformPanel : public Panel {
public:
    void take(const sonvex::IVectorData &data) override;
    std::string takeHeadline() override;
    std::vector<std::string> draw(std::size_t columns, std::size_t rows) const override;

private:
    std::vector<double> values;
    double scale = 1.0;
    double peak = 0.0; ///< since the last headline, or of the last results before it
    bool headlineTaken = false;
};

} // namespace analyser
