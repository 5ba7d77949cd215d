#pragma once

#include "analyser/ResultSink.h"

namespace analyser {

/// One JSON object per line, written at once.
class JsonSink : public ResultSink {
public:
    using ResultSink::ResultSink;

    void result(const Result &result) override;
    void message(const sonvex::imessages::IBaseMessage &message) override;
    void summary(const Progress &progress) override;

private:
    std::string line; // keeps its memory from result to result
};

} // namespace analyser
