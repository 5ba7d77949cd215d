#pragma once

#include "analyser/files/OutputFile.h"

namespace analyser {

/// One JSON object per line, written at once: the settings, then results and messages, and the summary.
class JsonFile : public OutputFile {
public:
    using OutputFile::OutputFile;

    void begin() override;
    void result(const monitoring::Result &result) override;
    void message(const monitoring::Message &message) override;
    void leftOut(const monitoring::LeftOut &amount) override;
    void end(const monitoring::Status &status) override;

private:
    std::string line; // keeps its memory from result to result
};

} // namespace analyser
