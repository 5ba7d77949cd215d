// The vector kernels against memcpy of the same traffic (bytes read plus bytes written), and a dispatched call against
// the direct one.
#include <cstring>
#include <memory>
#include <string>

#include "CpuLevelBenchmarks.h"
#include "RatioReporter.h"

/// The level's own function, without the dispatch.
namespace kernels::plain {
IppStatus ippsSet_32f(Ipp32f val, Ipp32f *pDst, int len);
}

namespace {

struct Buffers {
    explicit Buffers(std::size_t bytes)
        : bytes(bytes), first(allocateKernelMemory<char>(2 * bytes)), second(allocateKernelMemory<char>(2 * bytes)) {
        std::memset(first.get(), 0, 2 * bytes); // zeros stay zeros in each of the operations
        std::memset(second.get(), 0, 2 * bytes);
    }

    template <class Element>
    Element *in() const {
        return reinterpret_cast<Element *>(first.get());
    }
    template <class Element>
    Element *out() const {
        return reinterpret_cast<Element *>(second.get());
    }
    template <class Element>
    int length() const {
        return static_cast<int>(bytes / sizeof(Element));
    }

    std::size_t bytes;
    KernelMemory<char> first;
    KernelMemory<char> second;
};

struct Operation {
    const char *name;
    double traffic; ///< in units of the buffer's bytes
    void (*run)(const Buffers &buffers);
};

const Operation operations[] = {
    {"set", 1, [](const Buffers &b) { ippsSet_32f(0, b.out<float>(), b.length<float>()); }},
    {"multiply", 3, [](const Buffers &b) { ippsMul_32f_I(b.in<float>(), b.out<float>(), b.length<float>()); }},
    {"window", 2, [](const Buffers &b) { ippsWinHann_32f_I(b.out<float>(), b.length<float>()); }},
    {"power", 1.5,
     [](const Buffers &b) { ippsPowerSpectr_32fc(b.in<Ipp32fc>(), b.out<float>(), b.length<Ipp32fc>()); }},
    {"squares", 2, [](const Buffers &b) { ippsSqr_64f(b.in<double>(), b.out<double>(), b.length<double>()); }},
    {"expansion", 1, [](const Buffers &b) { ippsConjCcs_32fc_I(b.out<Ipp32fc>(), b.length<Ipp32fc>()); }},
};

std::string sizeName(std::size_t bytes) {
    return bytes < (1U << 20U) ? std::to_string(bytes >> 10U) + " KiB" : std::to_string(bytes >> 20U) + " MiB";
}

} // namespace

int main(int argc, char **argv) {
    for (const std::size_t bytes : {std::size_t{8} << 10U, std::size_t{128} << 10U, std::size_t{64} << 20U}) {
        const auto buffers = std::make_shared<Buffers>(bytes);
        for (const Operation &operation : operations) {
            const std::string row = std::string(operation.name) + " " + sizeName(bytes);
            const auto traffic = static_cast<std::size_t>(operation.traffic * static_cast<double>(bytes));
            registerPeer(
                "vectors", "memcpy", row, [=] { std::memcpy(buffers->out<char>(), buffers->in<char>(), traffic / 2); },
                traffic);
            registerAtAllLevels(
                "vectors", row, [=] { return [=] { operation.run(*buffers); }; }, traffic);
        }
    }
    const auto memory = allocateKernelMemory<float>(1);
    float *const value = memory.get();
    registerPeer("dispatch", "direct", "set, 1 value", [value] { kernels::plain::ippsSet_32f(1, value, 1); });
    registerAtLevel("dispatch", "dispatched", 0, "set, 1 value",
                    [value] { return [value] { ippsSet_32f(1, value, 1); }; });
    return runRatioBenchmarks(argc, argv, {"memcpy", "direct"});
}
