#pragma once

#include "kernels/FourierTransform.h"
#include "process/fft/IppFftBufferManager.h"

namespace process::fft {

/// The memory of one transform. Null until it is allocated; threads as for its base.
class IppFftBuffers : public IppFftBufferManager {
public:
    explicit IppFftBuffers(std::string name);
    ~IppFftBuffers() override;

    /// Allocates the four buffers of samples and values.
    /// @param size samples of a block @return false, with a warning, if one can't be had
    bool allocateAllIppBuffersFromSameSize(int size);

    std::string toString() const override;

    Ipp32f *sourceData = nullptr;         ///< the caller's block of the running calculation, borrowed
    Ipp32fc *fftResult = nullptr;         ///< bins 0 to half the size, with room for as many bins as samples
    Ipp32f *spareBuffer = nullptr;        ///< counts as a buffer, serves nothing: its pages are never touched
    Ipp32f *powerSpectrum = nullptr;      ///< a value for each bin
    Ipp32f *window = nullptr;             ///< a factor for each sample
    Ipp8u *workBuffer = nullptr;          ///< scratch of the transform; null where it needs none
    Ipp8u *specBuffer = nullptr;          ///< scratch of the tables' making; null where it needs none
    Ipp8u *specMemory = nullptr;          ///< what the tables are made in
    IppsFFTSpec_R_32f *fftSpec = nullptr; ///< the tables, inside specMemory: not managed
};

} // namespace process::fft
