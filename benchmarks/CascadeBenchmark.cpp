// The cascade of filter sections against its law written value by value.
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "CpuLevelBenchmarks.h"
#include "RatioReporter.h"

namespace {

constexpr int largestLength = 4800;

/// B0, B1, B2, A0, A1, A2 of high-passes at 20.6 Hz and 200 Hz and of a low-pass at 12.2 kHz, at 48 kHz.
constexpr double sections[3][6] = {{1, -2, 1, 1, -1.994614455993, 0.994621707014},
                                   {1, -2, 1, 1, -1.948, 0.94867},
                                   {1, 2, 1, 1, -0.224558458059, 0.012606625272}};

struct Signal {
    explicit Signal(bool isSilent = false) : values(largestLength), result(largestLength) {
        std::mt19937 random(1);
        std::uniform_real_distribution<double> range(-1, 1);
        for (double &value : values) {
            value = isSilent ? 0 : range(random);
        }
    }

    std::vector<double> values;
    std::vector<double> result;
};

/// The law, value by value through all sections.
void filter(Signal &signal, int length, const std::vector<double> &taps, std::vector<double> &delays) {
    const std::size_t amount = taps.size() / 6;
    for (int n = 0; n < length; ++n) {
        double x = signal.values[static_cast<std::size_t>(n)];
        for (std::size_t section = 0; section < amount; ++section) {
            const double *const tap = taps.data() + 6 * section;
            double *const delay = delays.data() + 2 * section;
            const double y = tap[0] * x + delay[0];
            delay[0] = tap[1] * x - tap[4] * y + delay[1];
            delay[1] = tap[2] * x - tap[5] * y;
            x = y;
        }
        signal.result[static_cast<std::size_t>(n)] = x;
    }
}

std::vector<double> tapsOf(int amount) {
    return std::vector<double>(sections[0], sections[0] + 6 * amount);
}

std::function<void()> makeFilter(const std::shared_ptr<Signal> &signal, int amount, int length, double start = 0) {
    int size = 0;
    ippsIIRGetStateSize_BiQuad_64f(amount, &size);
    const std::shared_ptr<Ipp8u> memory(ippsMalloc_8u(size), ippFree);
    const std::vector<double> delays(2 * static_cast<std::size_t>(amount), start);
    IppsIIRState_64f *state = nullptr;
    ippsIIRInit_BiQuad_64f(&state, tapsOf(amount).data(), amount, delays.data(), memory.get());
    return [=] {
        ippsIIR_64f(signal->values.data(), signal->result.data(), length, state);
        benchmark::DoNotOptimize(memory);
    };
}

} // namespace

int main(int argc, char **argv) {
    const auto signal = std::make_shared<Signal>();
    const auto silence = std::make_shared<Signal>(true);
    for (const int amount : {1, 2, 3}) {
        const auto taps = tapsOf(amount);
        for (const int length : {600, 1024, 4800}) {
            const std::string row = std::to_string(amount) + " x " + std::to_string(length);
            const auto delays = std::make_shared<std::vector<double>>(2 * static_cast<std::size_t>(amount));
            registerPeer("cascade", "law", row, [=] { filter(*signal, length, taps, *delays); });
            registerAtAllLevels("cascade", row, [=] { return makeFilter(signal, amount, length); });
        }
    }
    // Silence after sound: with a signal that has died away there is nothing but the decay.
    const auto delays = std::make_shared<std::vector<double>>(6, 0.1);
    const auto taps = tapsOf(3);
    registerPeer("cascade", "law", "silence 1024", [=] { filter(*silence, 1024, taps, *delays); });
    registerAtAllLevels("cascade", "silence 1024", [=] { return makeFilter(silence, 3, 1024, 0.1); });
    return runRatioBenchmarks(argc, argv, {"law"});
}
