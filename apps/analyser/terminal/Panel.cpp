#include "analyser/terminal/Panel.h"

#include "analyser/terminal/SoundLevelPanel.h"
#include "analyser/terminal/SpectrumPanel.h"
#include "analyser/terminal/WaveformPanel.h"

namespace analyser {

namespace {

/// The one place that says which panel shows which meter.
class PanelMaker : public monitoring::MeterVisitor {
public:
    explicit PanelMaker(SoundLevelUnit unit) : unit(unit) {}

    void visit(monitoring::SoundLevelMeter &meter) override { made = std::make_unique<SoundLevelPanel>(meter, unit); }
    void visit(monitoring::SpectrumMeter &meter) override { made = std::make_unique<SpectrumPanel>(meter, unit); }
    void visit(monitoring::WaveformMeter &meter) override { made = std::make_unique<WaveformPanel>(meter); }

    std::unique_ptr<Panel> made;

private:
    SoundLevelUnit unit;
};

} // namespace

MeterPanel::MeterPanel(const monitoring::Analysis &analysis, const monitoring::SessionSettings &settings)
    : meter(analysis.makeMeter(settings.window)) {
    PanelMaker maker{SoundLevelUnit(settings.reference)};
    meter->accept(maker);
    drawn = std::move(maker.made);
}

} // namespace analyser
