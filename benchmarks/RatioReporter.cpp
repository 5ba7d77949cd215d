#include "RatioReporter.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace {

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values.empty() ? 0.0 : values[values.size() / 2];
}

} // namespace

RatioReporter::RatioReporter(std::string candidate, std::string reference)
    : candidate(std::move(candidate)), reference(std::move(reference)) {}

bool RatioReporter::ReportContext(const Context &context) {
    PrintBasicContext(&GetErrorStream(), context);
    return true;
}

void RatioReporter::ReportRuns(const std::vector<Run> &runs) {
    for (const Run &run : runs) {
        if (run.run_type != Run::RT_Iteration || run.error_occurred) {
            continue;
        }
        const std::string &name = run.run_name.function_name;
        const std::string group = name.substr(name.find('/') + 1);
        if (std::find(cases.begin(), cases.end(), group) == cases.end()) {
            cases.push_back(group);
        }
        times[name].push_back(run.GetAdjustedCPUTime());
    }
}

void RatioReporter::Finalize() {
    std::printf("%-10s %14s %14s %8s\n", "case", (candidate + " ns").c_str(), (reference + " ns").c_str(), "ratio");
    for (const std::string &group : cases) {
        const double fast = median(times[candidate + "/" + group]);
        const double slow = median(times[reference + "/" + group]);
        std::printf("%-10s %14.1f %14.1f %8.3f\n", group.c_str(), fast, slow, slow > 0 ? fast / slow : 0.0);
    }
}
