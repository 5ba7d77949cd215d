#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace sonvex {
class IVectorData;
} // namespace sonvex

namespace analyser {

struct Analysis;
struct MonitorOptions;

/// What a view shows of one analysis: it takes the results and draws when it is asked to.
class Panel {
public:
    Panel() = default;
    virtual ~Panel() = default;
    Panel(const Panel &) = delete;
    Panel &operator=(const Panel &) = delete;

    virtual void take(const sonvex::IVectorData &data) = 0;
    /// The results since the last call in a few words; those before, if there are none.
    virtual std::string takeHeadline() = 0;
    /// At most @p rows lines of at most @p columns characters.
    virtual std::vector<std::string> draw(std::size_t columns, std::size_t rows) const = 0;
};

/// By the name of the analysis.
using Panels = std::map<std::string, std::unique_ptr<Panel>>;

Panels makePanels(const std::vector<Analysis> &analyses, const MonitorOptions &options);

} // namespace analyser
