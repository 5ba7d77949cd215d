// One cycle of the spectrum processor against the same cycle composed from FFTW.
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <numeric>
#include <random>
#include <vector>

#include <fftw3.h>

#include <QtGlobal>

#include "CpuLevelBenchmarks.h"
#include "DrivenProcessor.h"
#include "RatioReporter.h"
#include "avb/AvbAudioBuffer.h"
#include "core/configuration/BufferConfiguration.h"
#include "process/SpectrumProcessor.h"
#include "process/configuration/SpectrumConfig.h"

namespace {

constexpr unsigned averagedCycles = 16;
constexpr unsigned cyclesBetweenFullMeans = 100;

/// A channel full of noise with a tone.
struct Channel {
    explicit Channel(unsigned order)
        : length(std::size_t{1} << order), bufferConfig("buffer", static_cast<unsigned>(3 * length), 480),
          buffer("channel", bufferConfig) {
        std::mt19937 random(1);
        std::uniform_real_distribution<float> range(-1, 1);
        std::vector<float> samples(7 * length / 2 / 480 * 480 + 480); // the block comes from one piece of the ring
        for (std::size_t n = 0; n < samples.size(); ++n) {
            samples[n] = 0.1F * range(random) + static_cast<float>(0.5 * std::sin(0.1 * static_cast<double>(n)));
        }
        buffer.writeSamples(samples.data(), samples.size());
    }

    std::size_t length;
    sonvex::BufferConfiguration bufferConfig;
    avb::AvbAudioBuffer buffer;
};

/// The processor as it is.
struct Ours : Channel {
    Ours(unsigned order, bool isAveraged) : Channel(order), config("spectrum", 0, "SpectrumProcessor") {
        config.setFftOrder(order);
        config.setMovingAverageWindowSize(averagedCycles);
        config.setMovingAverageActive(isAveraged);
        processor =
            std::make_unique<DrivenProcessor>(process::SpectrumProcessor::createInstance("spectrum", config, buffer),
                                              buffer, 480, [this](sonvex::ChannelData data) {
                                                  benchmark::DoNotOptimize(data);
                                                  if (keepsResults) {
                                                      result = data.getVectorData().getY();
                                                  }
                                              });
    }

    process::SpectrumConfig config;
    bool keepsResults = false;
    std::vector<double> result;
    std::unique_ptr<DrivenProcessor> processor;
};

/// What one would compose from FFTW: the same steps in plain loops.
class Composed : public Channel {
public:
    Composed(unsigned order, bool isAveraged)
        : Channel(order), isAveraged(isAveraged), bins(length / 2), window(length), powers(bins), mean(bins),
          ring(averagedCycles, std::vector<double>(bins)), input(fftwf_alloc_real(length)),
          output(fftwf_alloc_complex(bins + 1)),
          plan(fftwf_plan_dft_r2c_1d(static_cast<int>(length), input, output, FFTW_MEASURE)) {
        for (std::size_t n = 0; n < length; ++n) {
            const double angle = 2 * M_PI * static_cast<double>(n) / static_cast<double>(length - 1);
            window[n] = static_cast<float>(0.5 - 0.5 * std::cos(angle));
        }
        std::vector<double> x(bins);
        std::iota(x.begin(), x.end(), 0.0);
        result.getVectorData().setX(std::move(x));
    }
    ~Composed() {
        fftwf_destroy_plan(plan);
        fftwf_free(input);
        fftwf_free(output);
    }
    Composed(const Composed &) = delete;
    Composed &operator=(const Composed &) = delete;

    void cycle() {
        const std::vector<float> samples = buffer.fetchSignaledSamples(length);
        for (std::size_t n = 0; n < length; ++n) {
            input[n] = samples[n] * window[n];
        }
        fftwf_execute(plan);
        const float scale = 5.334F / static_cast<float>(length) / static_cast<float>(length);
        for (std::size_t k = 0; k < bins; ++k) {
            powers[k] = (output[k][0] * output[k][0] + output[k][1] * output[k][1]) * scale;
        }
        std::vector<double> y(powers.begin(), powers.end());
        if (isAveraged) {
            average(y);
            y = mean;
        }
        result.getVectorData().setY(std::move(y));
        sonvex::ChannelData handedOver = result;
        benchmark::DoNotOptimize(handedOver);
    }

    sonvex::ChannelData result;

private:
    void average(const std::vector<double> &newest) {
        std::vector<double> &oldest = ring[next];
        next = (next + 1) % ring.size();
        const auto amount = static_cast<double>(ring.size());
        if (counter++ < cyclesBetweenFullMeans) {
            for (std::size_t k = 0; k < bins; ++k) {
                mean[k] = mean[k] + (newest[k] - oldest[k]) / amount;
            }
            oldest = newest;
            return;
        }
        counter = 0;
        oldest = newest;
        for (std::size_t k = 0; k < bins; ++k) {
            double sum = 0;
            for (const std::vector<double> &values : ring) {
                sum += values[k];
            }
            mean[k] = sum / amount;
        }
    }

    bool isAveraged;
    std::size_t bins;
    std::vector<float> window;
    std::vector<float> powers;
    std::vector<double> mean;
    std::vector<std::vector<double>> ring;
    float *input;
    fftwf_complex *output;
    fftwf_plan plan;
    std::size_t next = 0;
    unsigned counter = 0;
};

bool areEqual(Ours &ours, Composed &composed) {
    ours.keepsResults = true;
    for (int cycle = 0; cycle < 120; ++cycle) {
        ours.processor->cycle();
        composed.cycle();
        const std::vector<double> &a = ours.result;
        const std::vector<double> b = composed.result.getVectorData().getY();
        double largest = 0;
        double difference = a.size() == b.size() ? 0 : 1;
        for (std::size_t k = 0; k < std::min(a.size(), b.size()); ++k) {
            largest = std::max(largest, b[k]);
            difference = std::max(difference, std::abs(a[k] - b[k]));
        }
        if (!(difference < 1e-5 * largest)) {
            return false;
        }
    }
    return true;
}

} // namespace

int main(int argc, char **argv) {
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    for (const unsigned order : {10U, 12U, 14U, 16U}) {
        for (const bool isAveraged : {false, true}) {
            const std::string row = "order " + std::to_string(order) + (isAveraged ? " averaged" : "");
            const auto composed = std::make_shared<Composed>(order, isAveraged);
            Ours ours(order, isAveraged);
            if (!areEqual(ours, *composed)) {
                std::cerr << row << ": the spectra differ\n";
                return EXIT_FAILURE;
            }
            registerPeer("spectrum cycle", "fftw", row, [composed] { composed->cycle(); });
            registerAtAllLevels("spectrum cycle", row, [=]() -> std::function<void()> {
                const auto channel = std::make_shared<Ours>(order, isAveraged);
                return [channel] { channel->processor->cycle(); };
            });
        }
    }
    return runRatioBenchmarks(argc, argv, {"fftw"});
}
