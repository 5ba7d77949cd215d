#pragma once

#include "analyser/ResultSink.h"

namespace analyser {

/// A table with a row per sample. Lines that begin with '#' say the settings, the messages and the summary.
class CsvSink : public ResultSink {
public:
    CsvSink(Output &newOutput, const MonitorOptions &newOptions);

    void begin(const std::vector<Analysis> &analyses) override;
    void result(const Result &result) override;
    void message(const sonvex::imessages::IBaseMessage &message) override;
    void summary(const Progress &progress) override;

private:
    const MonitorOptions &options;
};

} // namespace analyser
