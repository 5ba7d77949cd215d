// The forward transform, out of place and aligned, against FFTW in single precision with measured plans.
#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <fftw3.h>

#include "CpuLevelBenchmarks.h"
#include "RatioReporter.h"

namespace {

/// Samples and their spectrum, the same memory for all that is measured.
struct Block {
    explicit Block(int order)
        : samples(allocateKernelMemory<float>(std::size_t{1} << order)),
          bins(allocateKernelMemory<float>((std::size_t{1} << order) + 2)) {
        const int length = 1 << order;
        plan =
            fftwf_plan_dft_r2c_1d(length, samples.get(), reinterpret_cast<fftwf_complex *>(bins.get()), FFTW_MEASURE);
        std::mt19937 random(1);
        std::uniform_real_distribution<float> range(-1, 1);
        for (int n = 0; n < length; ++n) {
            samples[static_cast<std::size_t>(n)] = range(random);
        }
    }

    KernelMemory<float> samples;
    KernelMemory<float> bins;
    fftwf_plan plan;
};

std::function<void()> makeTransform(const std::shared_ptr<Block> &block, int order) {
    int specSize = 0;
    int specBufferSize = 0;
    int bufferSize = 0;
    ippsFFTGetSize_R_32f(order, IPP_FFT_DIV_FWD_BY_N, ippAlgHintNone, &specSize, &specBufferSize, &bufferSize);
    const std::shared_ptr<Ipp8u> specMemory(ippsMalloc_8u(specSize), ippFree);
    const std::shared_ptr<Ipp8u> specBuffer(ippsMalloc_8u(specBufferSize), ippFree);
    const std::shared_ptr<Ipp8u> buffer(ippsMalloc_8u(bufferSize), ippFree);
    IppsFFTSpec_R_32f *spec = nullptr;
    ippsFFTInit_R_32f(&spec, order, IPP_FFT_DIV_FWD_BY_N, ippAlgHintNone, specMemory.get(), specBuffer.get());
    return [=] {
        ippsFFTFwd_RToCCS_32f(block->samples.get(), block->bins.get(), spec, buffer.get());
        benchmark::DoNotOptimize(specMemory);
    };
}

} // namespace

int main(int argc, char **argv) {
    for (const int order : {6, 8, 10, 11, 12, 13, 14, 15, 16, 17, 18, 20, 22}) {
        const std::string row = "order " + std::to_string(order);
        const auto block = std::make_shared<Block>(order);
        registerPeer("forward transform", "fftw", row, [block] { fftwf_execute(block->plan); });
        registerAtAllLevels("forward transform", row, [=] { return makeTransform(block, order); });
    }
    return runRatioBenchmarks(argc, argv, {"fftw"});
}
