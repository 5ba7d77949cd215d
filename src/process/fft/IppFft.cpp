#include "process/fft/IppFft.h"

#include <algorithm>
#include <new>
#include <stdexcept>

#include "core/logging/Log.h"
#include "kernels/kernels.h"

namespace process::fft {

namespace {

constexpr int highestOrder = 27;
constexpr int scaling = IPP_FFT_DIV_FWD_BY_N;
constexpr int algorithmHint = ippAlgHintAccurate;

/// What powers are multiplied by: a factor of 0 stands for none.
float multiplierOf(float factor) {
    return factor != 0.0F ? factor : 1.0F;
}

} // namespace

IppFft::IppFft(const std::string &name) : name(name), buffers(name) {
    ippVersionInfo();
    const bool ready = setFftOrder(2);
    logging::debug("process::fft::IppFft::IppFft", name, ready ? "Initialized" : "Initialization failed!");
}

void IppFft::ippVersionInfo() const {
    static constexpr char context[] = "process::fft::IppFft::ippVersionInfo";
    if (const IppLibraryVersion *const version = ippGetLibVersion()) {
        logging::debug(context, name, "Activated INTEL IPP module: ", version->Name,
                       ", module version: ", version->Version);
    } else {
        logging::warning(context, name, "INTEL IPP module not available! Spectrum processor functionality",
                         " not guaranteed!");
    }
}

bool IppFft::setFftOrder(unsigned int order) {
    static constexpr char context[] = "process::fft::IppFft::setFftOrder";
    const std::lock_guard<std::mutex> lock(mutex);
    if (order == 0 || order > highestOrder) {
        logging::warning(context, name, "FFT order is out of range ( 1 up to ", highestOrder, "): ", order);
        return false;
    }
    fftOrder = order;
    fftSize = 1U << order;
    buffers.freeBuffers();
    buffers.fftSpec = nullptr; // what it pointed into is gone, and a transform without tables is refused
    if (buffers.allocateAllIppBuffersFromSameSize(static_cast<int>(fftSize))) {
        const int kernelOrder = static_cast<int>(order);
        int specSize = 0;
        int specBufferSize = 0;
        int bufferSize = 0;
        IppStatus status =
            ippsFFTGetSize_R_32f(kernelOrder, scaling, algorithmHint, &specSize, &specBufferSize, &bufferSize);
        // Small orders need no scratch memory: a variable that stays null is in order then, and only then.
        bool complete = true;
        const auto allocate = [&](Ipp8u **buffer, int size) {
            const bool allocated = buffers.allocateIppBuffer8u(buffer, size);
            complete = complete && (allocated || size == 0);
        };
        allocate(&buffers.specMemory, specSize);
        allocate(&buffers.specBuffer, specBufferSize);
        allocate(&buffers.workBuffer, bufferSize);
        if (status == ippStsNoErr && !complete) {
            status = ippStsMemAllocErr;
        }
        if (status == ippStsNoErr) {
            status = ippsFFTInit_R_32f(&buffers.fftSpec, kernelOrder, scaling, algorithmHint, buffers.specMemory,
                                       buffers.specBuffer);
        }
        showFftInitializeMessage(status);
        if (status == ippStsNoErr) {
            logging::debug(context, name, "FFT order is changed to: ", order);
            return applyWindowing(windowingActive);
        }
    }
    logging::warning(context, name, "FFT order set to value '", order, "'failed!");
    return false;
}

void IppFft::showFftInitializeMessage(IppStatus status) const {
    static constexpr char context[] = "process::fft::IppFft::showFftInitializeMessage";
    if (status == ippStsNoErr) {
        logging::debug(context, name, "IPP FFT initialized");
    } else {
        logging::debug(context, name, "IPP FFT initialization failed! Error description: ", ippGetStatusString(status));
    }
}

bool IppFft::setWindowing(bool active) {
    const std::lock_guard<std::mutex> lock(mutex);
    return applyWindowing(active);
}

bool IppFft::isWindowingActive() const {
    const std::lock_guard<std::mutex> lock(mutex);
    return windowingActive;
}

bool IppFft::isReady() const {
    const std::lock_guard<std::mutex> lock(mutex);
    return buffers.fftSpec != nullptr;
}

bool IppFft::applyWindowing(bool active) {
    static constexpr char context[] = "process::fft::IppFft::setWindowingFunction";
    if (!active) {
        windowingActive = false;
        logging::debug("process::fft::IppFft::setWindowing", name, "Hann window deactivated!");
        return true;
    }
    const int size = static_cast<int>(fftSize);
    IppStatus status = ippsSet_32f(1.0F, buffers.window, size);
    if (status == ippStsNoErr) {
        status = ippsWinHann_32f_I(buffers.window, size);
    }
    windowingActive = status == ippStsNoErr;
    if (windowingActive) {
        logging::debug(context, name, "Hann window activated and will be applied!");
    } else {
        logging::warning(context, name, "Failed to apply the Hann window! Error message: ", ippGetStatusString(status));
    }
    return windowingActive;
}

bool IppFft::calculate(std::vector<float> &samples) {
    const std::lock_guard<std::mutex> lock(mutex);
    if (samples.size() != fftSize) {
        logging::warning("process::fft::IppFft::calculate", name, "Input data vector size ' ", samples.size(),
                         "' don't equals the predefined FFT size: ", fftSize, "! FFT calculation skipped!");
        return false;
    }
    buffers.sourceData = samples.data();
    if (windowingActive &&
        ippsMul_32f_I(buffers.window, buffers.sourceData, static_cast<int>(fftSize)) != ippStsNoErr) {
        return false;
    }
    return ippsFFTFwd_RToCCS_32f(buffers.sourceData, reinterpret_cast<Ipp32f *>(buffers.fftResult), buffers.fftSpec,
                                 buffers.workBuffer) == ippStsNoErr;
}

bool IppFft::getFftResultsPowerSpectrum(std::vector<float> &result, std::size_t amount, float factor) {
    const std::size_t wanted = limitedToSize(amount);
    const std::size_t computed = std::min<std::size_t>(wanted, fftSize / 2 + 1);
    if (!isConverted(ippsPowerSpectr_32fc(buffers.fftResult, buffers.powerSpectrum, static_cast<int>(computed)))) {
        return false;
    }
    for (std::size_t bin = computed; bin < wanted; ++bin) {
        buffers.powerSpectrum[bin] = buffers.powerSpectrum[fftSize - bin];
    }
    return processResultData(buffers.powerSpectrum, result, amount, factor);
}

bool IppFft::getFftResultsPowerSpectrum(std::vector<double> &powers, float factor) {
    const std::size_t bins = std::min<std::size_t>(powers.size(), fftSize / 2 + 1);
    return isConverted(
        sonvexScaledPower_32fc64f(buffers.fftResult, multiplierOf(factor), powers.data(), static_cast<int>(bins)));
}

bool IppFft::isConverted(IppStatus status) const {
    if (status != ippStsNoErr) {
        logging::warning("process::fft::IppFft::getFftResultsPowerSpectrum", name,
                         "Power value conversion failed! Error message: ", ippGetStatusString(status));
    }
    return status == ippStsNoErr;
}

std::size_t IppFft::limitedToSize(std::size_t amount) const {
    return amount == 0 || amount > fftSize ? fftSize : amount;
}

bool IppFft::processResultData(const float *data, std::vector<float> &result, std::size_t amount, float factor) const {
    static constexpr char context[] = "process::fft::IppFft::processResultData";
    const std::size_t wanted = limitedToSize(amount);
    if (data == nullptr) {
        logging::warning(context, name, "FFT buffer cannot be initialized! No operation performed!");
        return false;
    }
    try {
        result.resize(std::max(result.size(), wanted));
    } catch (const std::bad_alloc &error) {
        logging::warning(context, name,
                         "Failed to fill the result vector by the FFT results! Error message: ", error.what());
        return false;
    }
    const float multiplier = multiplierOf(factor);
    std::transform(data, data + wanted, result.begin(), [multiplier](float value) { return value * multiplier; });
    return true;
}

std::string IppFft::toString() const {
    const std::lock_guard<std::mutex> lock(mutex);
    return "IppFft: " + name + "\n\tFFT order: " + std::to_string(fftOrder) +
           "\n\tFFT size: " + std::to_string(fftSize) + "\n\tWindowing active: " + (windowingActive ? "1" : "0") +
           "\n" + (windowingActive ? "\tWindowing type: Hann\n" : "") + buffers.toString();
}

} // namespace process::fft
