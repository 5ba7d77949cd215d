#include "process/fft/IppFftBuffers.h"

#include <utility>

#include "core/logging/Log.h"

namespace process::fft {

IppFftBuffers::IppFftBuffers(std::string name) : IppFftBufferManager(std::move(name)) {
    logging::debug("process::fft::IppFftBuffers::IppFftBuffers", this->name, "Initialized");
}

IppFftBuffers::~IppFftBuffers() {
    releaseAtEnd();
}

bool IppFftBuffers::allocateAllIppBuffersFromSameSize(int size) {
    static constexpr char context[] = "process::fft::IppFftBuffers::allocateAllIppBuffersFromSameSize";
    if (allocateIppBuffer32f(&spareBuffer, size) && allocateIppBuffer32f(&powerSpectrum, size) &&
        allocateIppBuffer32f(&window, size) && allocateIppBuffer32fc(&fftResult, size)) {
        logging::debug(context, name, "FFT Buffers allocated by size: ", size, " samples");
        return true;
    }
    logging::warning(context, "Cannot set the IPP buffers to size: ", size, "! Allocation failed!");
    return false;
}

std::string IppFftBuffers::toString() const {
    return "IppFftBuffers: " + name + "\n" + IppFftBufferManager::toString();
}

} // namespace process::fft
