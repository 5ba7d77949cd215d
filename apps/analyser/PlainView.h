#pragma once

#include <map>

#include "analyser/ResultSink.h"

namespace analyser {

/// The live view where the output is no terminal: a line per analysis and second.
class PlainView : public ResultSink {
public:
    using ResultSink::ResultSink;

    void result(const Result &result) override;
    void message(const sonvex::imessages::IBaseMessage &message) override;
    void progress(const Progress &progress) override;
    void summary(const Progress &progress) override;

private:
    std::map<std::string, double> peaks; // since the last line, by the analysis
};

} // namespace analyser
