#pragma once

#include <deque>
#include <optional>

#include <termios.h>

#include <QTimer>

#include "analyser/Panel.h"
#include "analyser/ResultSink.h"

namespace analyser {

/// A view that redraws in place, on the terminal's alternate screen. Draws only when something has changed.
class LiveView : public ResultSink {
public:
    LiveView(Output &newOutput, const MonitorOptions &newOptions);
    ~LiveView() override;

    /// Whether @p output goes to a terminal that can redraw.
    static bool isPossible(const Output &output);

    void begin(const std::vector<Analysis> &analyses) override;
    void result(const Result &result) override;
    void message(const sonvex::imessages::IBaseMessage &message) override;
    void progress(const Progress &progress) override;
    void summary(const Progress &progress) override;
    bool needsScreen() const override { return true; }
    void enterScreen() override;
    void leaveScreen() override;
    void resized() override { drawSoon(); }

private:
    struct Size {
        std::size_t columns;
        std::size_t rows;
    };

    void drawSoon();
    void draw();
    Size windowSize() const;
    std::vector<std::string> panelLines(const AnalysisProgress &entry, Size size);

    const MonitorOptions &options;
    Progress latest;
    Panels panels;
    std::deque<std::string> messages; // the newest
    QTimer redraw;
    std::optional<termios> terminalBefore; // while the screen is entered
};

} // namespace analyser
