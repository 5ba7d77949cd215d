#pragma once

#include "analyser/Panel.h"
#include "analyser/ResultSink.h"

namespace analyser {

/// The live view where the output is no terminal: a line per analysis and second.
class PlainView : public ResultSink {
public:
    PlainView(Output &newOutput, const MonitorOptions &newOptions) : ResultSink(newOutput), options(newOptions) {}

    void begin(const std::vector<Analysis> &analyses) override;
    void result(const Result &result) override;
    void message(const sonvex::imessages::IBaseMessage &message) override;
    void progress(const Progress &progress) override;
    void summary(const Progress &progress) override;

private:
    const MonitorOptions &options;
    Panels panels;
};

} // namespace analyser
