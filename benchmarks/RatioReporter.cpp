#include "RatioReporter.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace {

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values.empty() ? 0.0 : values[values.size() / 2];
}

/// The names of a map by place.
std::vector<std::string> inOrder(const std::map<std::string, std::int64_t> &places) {
    std::vector<std::string> names;
    for (const auto &place : places) {
        names.push_back(place.first);
    }
    std::sort(names.begin(), names.end(),
              [&](const std::string &a, const std::string &b) { return places.at(a) < places.at(b); });
    return names;
}

void note(std::map<std::string, std::int64_t> &places, const std::string &name, std::int64_t place) {
    const auto entry = places.emplace(name, place).first;
    entry->second = std::min(entry->second, place);
}

} // namespace

RatioReporter::RatioReporter(std::set<std::string> peers) : peers(std::move(peers)) {}

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
        const std::size_t first = name.find('/');
        const std::size_t second = name.find('/', first + 1);
        const std::string series = name.substr(first + 1, second - first - 1);
        Table &table = tables[name.substr(0, first)];
        if (peers.count(series) != 0) {
            table.peer = series;
        } else {
            note(table.series, series, run.family_index);
        }
        note(table.cases, name.substr(second + 1), run.family_index);
        Sample &sample = table.samples[name.substr(first + 1)];
        sample.times.push_back(run.GetAdjustedCPUTime());
        const auto bytes = run.counters.find("bytes_per_second");
        if (bytes != run.counters.end()) {
            sample.bytes = bytes->second.value * run.cpu_accumulated_time / static_cast<double>(run.iterations);
        }
    }
}

void RatioReporter::print(const std::string &name, const Table &table) {
    const bool isSpeed = table.samples.begin()->second.bytes > 0;
    const auto shown = [isSpeed](double time, double bytes) { return isSpeed && time > 0 ? bytes / time : time; };
    const std::string unit = isSpeed ? " GB/s" : " ns";
    std::printf("\n%s\n%-16s %14s", name.c_str(), "case", (table.peer + unit).c_str());
    for (const std::string &series : inOrder(table.series)) {
        std::printf(" %17s %6s", (series + unit).c_str(), "ratio");
    }
    std::printf("\n");
    for (const std::string &row : inOrder(table.cases)) {
        const auto sampleOf = [&](const std::string &series) {
            const auto found = table.samples.find(series + "/" + row);
            return found == table.samples.end() ? Sample{} : found->second;
        };
        const Sample peer = sampleOf(table.peer);
        const double slow = median(peer.times);
        std::printf("%-16s %14.1f", row.c_str(), shown(slow, peer.bytes));
        for (const std::string &series : inOrder(table.series)) {
            const Sample sample = sampleOf(series);
            const double time = median(sample.times);
            std::printf(" %17.1f %6.3f", shown(time, sample.bytes), slow > 0 ? time / slow : 0.0);
        }
        std::printf("\n");
    }
}

void RatioReporter::Finalize() {
    for (const auto &[name, table] : tables) {
        print(name, table);
    }
}

int runRatioBenchmarks(int argc, char **argv, std::set<std::string> peers) {
    std::vector<std::string> words(argv, argv + argc);
    for (const char *preset :
         {"--benchmark_enable_random_interleaving=true", "--benchmark_repetitions=9", "--benchmark_min_time=0.05"}) {
        words.insert(words.begin() + 1, preset); // those of the command line come behind and win
    }
    std::vector<char *> arguments;
    for (std::string &word : words) {
        arguments.push_back(word.data());
    }
    int amount = static_cast<int>(arguments.size());
    benchmark::Initialize(&amount, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(amount, arguments.data())) {
        return EXIT_FAILURE;
    }
    RatioReporter reporter(std::move(peers));
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return EXIT_SUCCESS;
}
