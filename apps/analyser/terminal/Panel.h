#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "analyser/terminal/SoundLevelUnit.h"
#include "monitoring/Result.h"
#include "monitoring/SessionSettings.h"
#include "monitoring/meters/Meter.h"

namespace analyser {

/// How a view shows what a meter has measured, when it is asked to.
class Panel {
public:
    Panel() = default;
    virtual ~Panel() = default;
    Panel(const Panel &) = delete;
    Panel &operator=(const Panel &) = delete;

    /// The results since the last call in a few words; those before, if there are none.
    virtual std::string takeHeadline() = 0;
    /// At most @p rows lines of at most @p columns characters.
    virtual std::vector<std::string> draw(std::size_t columns, std::size_t rows) = 0;
    /// Whether it has a form of one line, for many of its kind.
    virtual bool hasLine() const { return false; }
    /// @param title what stands before @return exactly @p columns characters, if there is room for a title and a value
    virtual std::string drawLine(const std::string &title, std::size_t /*columns*/) { return title; }
};

/// A meter of a view's own with its panel, for one analysis.
class MeterPanel {
public:
    MeterPanel(const monitoring::Analysis &analysis, const monitoring::SessionSettings &settings);

    void take(const monitoring::Result &result) { meter->take(result.y); }
    Panel &panel() { return *drawn; }

private:
    std::unique_ptr<monitoring::Meter> meter;
    std::unique_ptr<Panel> drawn;
};

} // namespace analyser
