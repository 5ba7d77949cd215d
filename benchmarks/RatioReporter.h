#pragma once

#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

/**
 * Prints a table with one row per case: the median time of an iteration of the candidate and of its reference, and
 * their ratio. Names are "candidate/case" and "reference/case"; both are measured in the same run, interleaved.
 */
class RatioReporter : public benchmark::BenchmarkReporter {
public:
    RatioReporter(std::string candidate, std::string reference);

    bool ReportContext(const Context &context) override;
    void ReportRuns(const std::vector<Run> &runs) override;
    void Finalize() override;

private:
    using Times = std::map<std::string, std::vector<double>>; ///< nanoseconds by name

    std::string candidate;
    std::string reference;
    std::vector<std::string> cases; ///< in the order of their first run
    Times times;
};
