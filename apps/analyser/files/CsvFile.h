#pragma once

#include "analyser/files/OutputFile.h"

namespace analyser {

/// Comma-separated values, a row for each, below comments that say what they are.
class CsvFile : public OutputFile {
public:
    using OutputFile::OutputFile;

    void begin() override;
    void result(const monitoring::Result &result) override;
    void message(const monitoring::Message &message) override;
    void leftOut(const monitoring::LeftOut &amount) override;
    void end(const monitoring::Status &status) override;
};

} // namespace analyser
