#include "core/facts/AdapterFacts.h"

#include <new>
#include <utility>

namespace facts {

void AdapterFacts::begin() {
    capturing.set(false);
    framesSeen.set(0);
    framesOfNoStream.set(0);
    countDropsWith({});
    kernelDrops = 0;
    const std::lock_guard<std::mutex> lock(textMutex);
    endReason.clear();
    startError.clear();
}

void AdapterFacts::startFailed(const std::string &error) {
    const std::lock_guard<std::mutex> lock(textMutex);
    startError = error;
}

void AdapterFacts::captureStarted() {
    capturing.set(true);
    const std::lock_guard<std::mutex> lock(textMutex);
    endReason.clear();
    startError.clear();
}

void AdapterFacts::captureStopped() {
    capturing.set(false);
}

void AdapterFacts::captureFailed(const char *reason) {
    {
        const std::lock_guard<std::mutex> lock(textMutex);
        try {
            endReason = reason;
        } catch (const std::bad_alloc &) { // on a thread that nobody could tell
            endReason.clear();
        }
    }
    capturing.set(false); // who sees that finds the reason
}

void AdapterFacts::countDropsWith(std::function<std::uint32_t()> counter) {
    countDrops();
    dropCounter = std::move(counter);
    latestDrops = dropCounter ? dropCounter() : 0;
}

void AdapterFacts::countDrops() const {
    if (dropCounter) {
        const std::uint32_t drops = dropCounter();
        kernelDrops += drops - latestDrops;
        latestDrops = drops;
    }
}

bool AdapterFacts::isCapturing() const {
    return capturing.get();
}

std::string AdapterFacts::getEndReason() const {
    const std::lock_guard<std::mutex> lock(textMutex);
    return endReason;
}

std::string AdapterFacts::getStartError() const {
    const std::lock_guard<std::mutex> lock(textMutex);
    return startError;
}

std::uint64_t AdapterFacts::getKernelDrops() const {
    countDrops();
    return kernelDrops;
}

std::uint64_t AdapterFacts::getFramesSeen() const {
    return framesSeen.get();
}

std::uint64_t AdapterFacts::getFramesOfNoStream() const {
    return framesOfNoStream.get();
}

} // namespace facts
