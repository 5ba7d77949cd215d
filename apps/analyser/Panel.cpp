#include "analyser/Panel.h"

#include "analyser/LevelPanel.h"
#include "analyser/Session.h"
#include "analyser/SpectrumPanel.h"
#include "analyser/WaveformPanel.h"

namespace analyser {

namespace {

std::unique_ptr<Panel> makePanel(const Analysis &analysis, const MonitorOptions &options) {
    const LevelUnit unit(options.reference);
    switch (analysis.options.kind) {
    case AnalysisKind::spectrum:
        return std::make_unique<SpectrumPanel>(analysis.options.binWidth(), unit);
    case AnalysisKind::levels:
        return std::make_unique<LevelPanel>(unit);
    case AnalysisKind::waveform:
        break;
    }
    return std::make_unique<WaveformPanel>();
}

} // namespace

Panels makePanels(const std::vector<Analysis> &analyses, const MonitorOptions &options) {
    Panels panels;
    for (const Analysis &analysis : analyses) {
        panels[analysis.name] = makePanel(analysis, options);
    }
    return panels;
}

} // namespace analyser
