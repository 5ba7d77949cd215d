#pragma once

#include <array>

#include "analyser/Levels.h"
#include "analyser/Panel.h"

namespace analyser {

/// A meter for each level, with the highest value and the mean of the energies since the start.
class LevelPanel : public Panel {
public:
    explicit LevelPanel(LevelUnit unit) : unit(unit) {}

    void take(const sonvex::IVectorData &data) override;
    std::string takeHeadline() override;
    std::vector<std::string> draw(std::size_t columns, std::size_t rows) const override;

private:
    struct Meter {
        double level;
        double highest;
        double energy = 0.0; ///< sum of the results
    };

    /// "-3.0  max -3.0  eq -3.1"
    std::string describe(const Meter &meter) const;

    LevelUnit unit;
    std::array<Meter, levelNames.size()> meters = startMeters();
    double results = 0.0;

    static std::array<Meter, levelNames.size()> startMeters();
};

} // namespace analyser
