#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

/**
 * Prints tables with one row per case: the median of the peer, then the median of each other series and its time as a
 * fraction of the peer's. Names are "table/series/case"; all of them are measured in the same run, interleaved. Where
 * the benchmark tells how many bytes it moves, the medians are GB/s instead of ns.
 */
class RatioReporter : public benchmark::BenchmarkReporter {
public:
    /// @param peers the series that the others of their table are compared with
    explicit RatioReporter(std::set<std::string> peers);

    bool ReportContext(const Context &context) override;
    void ReportRuns(const std::vector<Run> &runs) override;
    void Finalize() override;

private:
    struct Sample {
        std::vector<double> times; ///< ns of CPU time per iteration
        double bytes = 0;          ///< per iteration, 0 if not told
    };

    /// Names with the place of their registration: interleaved runs come in any order.
    using Places = std::map<std::string, std::int64_t>;

    struct Table {
        std::string peer;
        Places series;
        Places cases;
        std::map<std::string, Sample> samples; ///< by "series/case"
    };

    static void print(const std::string &name, const Table &table);

    std::set<std::string> peers;
    std::map<std::string, Table> tables; ///< by name
};

/// Runs the registered benchmarks with the command line's options and prints their tables. The result of main.
int runRatioBenchmarks(int argc, char **argv, std::set<std::string> peers);
