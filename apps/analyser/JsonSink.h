#pragma once

#include "analyser/ResultSink.h"

namespace analyser {

/// One JSON object per line, written at once: the settings, then results and messages, and the summary.
class JsonSink : public ResultSink {
public:
    JsonSink(Output &newOutput, const MonitorOptions &newOptions) : ResultSink(newOutput), options(newOptions) {}

    void begin(const std::vector<Analysis> &analyses) override;

    void result(const Result &result) override;
    void message(const sonvex::imessages::IBaseMessage &message) override;
    void summary(const Progress &progress) override;

private:
    const MonitorOptions &options;
    std::string line; // keeps its memory from result to result
};

} // namespace analyser
