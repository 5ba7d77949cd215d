#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

#include "core/data/StringOverloadBase.h"
#include "process/fft/IppFftBuffers.h"

namespace process::fft {

/**
 * Power spectra of blocks of 2^order samples, with all memory and tables made when the order is set.
 *
 * Only bins 0 to half the size are ever computed: a real signal's other bins are their mirror images, and so are their
 * powers, for those who ask for them.
 *
 * Threads: the mutex makes orders, windows, calculations and dumps exclude each other. getFftResultsPowerSpectrum()
 * takes no lock, as it belongs to the calculation before it: the owner keeps order changes away from the two.
 */
class IppFft : public StringOverloadBase {
public:
    /// Of order 2, without a window.
    explicit IppFft(const std::string &name);

    /**
     * Replaces memory, tables and window.
     * @param order 1 to 27; another one is refused and changes nothing
     * @return false if that failed. Where there was no memory nothing is transformed until the next success; where just
     * the window failed, as that of two samples does, blocks are transformed without one.
     */
    bool setFftOrder(unsigned int order);

    /// The Hann window for all blocks to come, until it is switched off. @return false if it failed and is off
    bool setWindowing(bool active);
    bool isWindowingActive() const;
    /// Whether the latest order has its transform.
    bool isReady() const;

    /**
     * Transforms a block, scaled by 1/N.
     * @param samples as many as the FFT size, or they are refused with a warning; with a window they are multiplied by
     * it in place
     */
    bool calculate(std::vector<float> &samples);

    /**
     * The squared magnitudes of the latest calculation, times a factor.
     * @param result receives them at its front and grows where it is too short; a longer one keeps its tail
     * @param amount of bins; 0, or more than the FFT size, for all of them
     * @param factor 0 leaves the powers as they are
     */
    bool getFftResultsPowerSpectrum(std::vector<float> &result, std::size_t amount, float factor);

    /// The same, also for a factor of 0, with doubles and in one pass, for bins of the lower half alone.
    /// @param powers as many as are wanted; has at most half the FFT size plus one
    bool getFftResultsPowerSpectrum(std::vector<double> &powers, float factor);

    std::string toString() const override;

private:
    void ippVersionInfo() const;
    void showFftInitializeMessage(IppStatus status) const;
    bool applyWindowing(bool active);
    bool isConverted(IppStatus status) const;
    bool processResultData(const float *data, std::vector<float> &result, std::size_t amount, float factor) const;
    /// Amounts that mean the whole block become its size.
    std::size_t limitedToSize(std::size_t amount) const;

    const std::string name;
    IppFftBuffers buffers;
    std::uint32_t fftSize = 1;
    std::uint32_t fftOrder = 1;
    bool windowingActive = false;
    mutable std::mutex mutex;
};

} // namespace process::fft
