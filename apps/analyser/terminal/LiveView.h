#pragma once

#include <deque>
#include <map>
#include <memory>
#include <optional>

#include <termios.h>

#include "analyser/terminal/Panel.h"
#include "monitoring/Listener.h"
#include "monitoring/SessionSettings.h"

namespace analyser {

class Output;

/// A view that redraws in place, on the terminal's alternate screen. Draws only when something has changed. Everything
/// runs on its listener's thread.
class LiveView : public monitoring::Listener {
public:
    LiveView(std::shared_ptr<Output> newOutput, const monitoring::SessionSettings &newSettings);
    ~LiveView() override;

    /// Whether @p output goes to a terminal that can redraw.
    static bool isPossible(const Output &output);

    void begin() override { enterScreen(); }
    void result(const monitoring::Result &result) override;
    void message(const monitoring::Message &message) override;
    void status(const monitoring::Status &status) override;
    void end(const monitoring::Status &status) override;
    std::optional<Clock::time_point> due() const override { return redraw; }
    void wake() override;

    void enterScreen();
    /// Gives the terminal back as it was.
    void leaveScreen();
    /// For a window that has another size, too.
    void drawSoon();

private:
    struct Size {
        std::size_t columns;
        std::size_t rows;
    };

    void draw();
    Size windowSize() const;
    std::vector<std::string> drawPanels(std::size_t columns, std::size_t rows);
    std::vector<std::string> meterLines(const std::vector<const monitoring::AnalysisStatus *> &meters,
                                        std::size_t columns, std::size_t rows);
    std::vector<std::string> panelLines(const monitoring::AnalysisStatus &entry, std::size_t columns, std::size_t rows);

    const std::shared_ptr<Output> output;
    const monitoring::SessionSettings &settings;
    monitoring::Status latest;
    std::map<const monitoring::Analysis *, MeterPanel> panels;
    std::deque<std::string> messages;        // the newest
    std::optional<Clock::time_point> redraw; // while something has changed
    std::optional<termios> terminalBefore;   // while the screen is entered
};

} // namespace analyser
