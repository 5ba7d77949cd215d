#include "KernelLevels.h"

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

void registerAtAllLevels(const std::string &table, const std::string &row,
                         const std::function<std::function<void()>()> &make, std::size_t bytes) {
    for (int level = kernels::highestCpuLevel(); level >= 0; --level) {
        auto run = std::make_shared<std::function<void()>>();
        const std::string name = table + "/" + kernels::cpuLevelName(level) + "/" + row;
        benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State &state) {
            const kernels::ForcedCpuLevel forced(level);
            if (!*run) {
                *run = make();
            }
            measure(state, *run, bytes);
        });
    }
}

void registerPeer(const std::string &table, const std::string &peer, const std::string &row,
                  const std::function<void()> &run, std::size_t bytes) {
    benchmark::RegisterBenchmark((table + "/" + peer + "/" + row).c_str(),
                                 [=](benchmark::State &state) { measure(state, run, bytes); });
}
