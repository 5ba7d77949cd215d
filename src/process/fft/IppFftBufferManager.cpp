#include "process/fft/IppFftBufferManager.h"

#include <cstring>
#include <exception>
#include <utility>

#include "core/logging/Log.h"
#include "kernels/kernels.h"

namespace process::fft {

namespace {

// The variables are pointers to other types than void: only their bytes may be touched through a void **.

void *heldBy(void **variable) {
    void *held = nullptr;
    std::memcpy(&held, variable, sizeof held);
    return held;
}

void setNull(void **variable) {
    void *const null = nullptr;
    std::memcpy(variable, &null, sizeof null);
}

} // namespace

IppFftBufferManager::IppFftBufferManager(std::string name) : name(std::move(name)) {
    logging::debug("process::fft::IppFftBufferManager::IppFftBufferManager", this->name, "Initialized");
}

IppFftBufferManager::~IppFftBufferManager() {
    releaseAtEnd();
}

void IppFftBufferManager::releaseAtEnd() {
    if (!std::exchange(ended, true)) {
        logging::debug("process::fft::IppFftBufferManager::~IppFftBufferManager", name,
                       "Try to release the managed buffers...");
        freeBuffers();
    }
}

bool IppFftBufferManager::addToIppBuffers(void **buffer) {
    static constexpr char context[] = "process::fft::IppFftBufferManager::addToIppBuffers";
    if (heldBy(buffer) == nullptr) {
        logging::warning(context, "The address of the buffer is not initialized and won't be managed:", buffer);
        return false;
    }
    try {
        managedBuffers.push_back(buffer);
    } catch (const std::exception &error) {
        logging::warning(context, "Cannot add buffer", buffer, " to managed buffer vector! ",
                         "Error message: ", error.what());
        return false;
    }
    return true;
}

void IppFftBufferManager::addBufferDeniedMessageToLog(void **buffer) {
    logging::warning("process::fft::IppFftBufferManager::addBufferDeniedMessageToLog",
                     "The address of the buffer is already initialized and won't be managed: 0x", heldBy(buffer));
}

template <class Element>
bool IppFftBufferManager::allocate(Element **buffer, int length, Element *(*allocator)(int)) {
    auto *const variable = reinterpret_cast<void **>(buffer);
    if (*buffer != nullptr) {
        addBufferDeniedMessageToLog(variable);
        return false;
    }
    *buffer = allocator(length);
    if (addToIppBuffers(variable)) {
        return true;
    }
    ippFree(std::exchange(*buffer, nullptr)); // nobody would
    return false;
}

bool IppFftBufferManager::allocateIppBuffer8u(Ipp8u **buffer, int length) {
    return allocate(buffer, length, ippsMalloc_8u);
}

bool IppFftBufferManager::allocateIppBuffer32f(Ipp32f **buffer, int length) {
    return allocate(buffer, length, ippsMalloc_32f);
}

bool IppFftBufferManager::allocateIppBuffer32fc(Ipp32fc **buffer, int length) {
    return allocate(buffer, length, ippsMalloc_32fc);
}

void IppFftBufferManager::freeBuffers() {
    const std::size_t available = managedBuffers.size();
    std::size_t released = 0;
    for (void **const buffer : managedBuffers) {
        if (void *const memory = heldBy(buffer)) {
            ippFree(memory);
            setNull(buffer);
            ++released;
        }
    }
    managedBuffers.clear();
    logging::debug("process::fft::IppFftBufferManager::freeBuffers", name, "Available amount of buffers: ", available,
                   ". Buffers released: ", released);
}

std::string IppFftBufferManager::toString() const {
    return "IppFftBufferManager: " + name + "\n\tAmount of managed buffers: " + std::to_string(managedBuffers.size());
}

} // namespace process::fft
