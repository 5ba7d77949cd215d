#pragma once

#include "analyser/Levels.h"
#include "analyser/Panel.h"

namespace analyser {

/// The newest spectrum as a line and the highest value of each bin so far as dots, over a logarithmic frequency axis.
class SpectrumPanel : public Panel {
public:
    /// @param binWidth in Hz
    SpectrumPanel(double binWidth, LevelUnit unit) : binWidth(binWidth), unit(unit) {}

    void take(const sonvex::IVectorData &data) override;
    std::string takeHeadline() override;
    std::vector<std::string> draw(std::size_t columns, std::size_t rows) const override;

private:
    double binWidth;
    LevelUnit unit;
    std::vector<double> powers;
    std::vector<double> held;
};

} // namespace analyser
