#include "CpuLevelBenchmarks.h"

#include "kernels/CpuLevel.h"

namespace {

void measure(benchmark::State &state, const std::function<void()> &run, std::size_t bytes) {
    for (auto _ : state) {
        run();
        benchmark::ClobberMemory();
    }
    if (bytes > 0) {
        state.SetBytesProcessed(static_cast<std::int64_t>(bytes) * static_cast<std::int64_t>(state.iterations()));
    }
}

} // namespace

void registerAtLevel(const std::string &table, const std::string &series, int level, const std::string &row,
                     const std::function<std::function<void()>()> &make, std::size_t bytes) {
    auto run = std::make_shared<std::function<void()>>();
    benchmark::RegisterBenchmark((table + "/" + series + "/" + row).c_str(), [=](benchmark::State &state) {
        const kernels::ForcedCpuLevel forced(level);
        if (!*run) {
            *run = make();
        }
        measure(state, *run, bytes);
    });
}

void registerAtAllLevels(const std::string &table, const std::string &row,
                         const std::function<std::function<void()>()> &make, std::size_t bytes) {
    for (int level = kernels::highestCpuLevel(); level >= 0; --level) {
        registerAtLevel(table, kernels::cpuLevelName(level), level, row, make, bytes);
    }
}

void registerPeer(const std::string &table, const std::string &peer, const std::string &row,
                  const std::function<void()> &run, std::size_t bytes) {
    benchmark::RegisterBenchmark((table + "/" + peer + "/" + row).c_str(),
                                 [=](benchmark::State &state) { measure(state, run, bytes); });
}
