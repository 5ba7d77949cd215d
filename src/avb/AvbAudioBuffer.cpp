#include "avb/AvbAudioBuffer.h"

#include <algorithm>

#include <QCoreApplication>

#include "core/configuration/BufferConfiguration.h"
#include "core/data/ChangeNotices.h"
#include "core/logging/Log.h"

namespace avb {

AvbAudioBuffer::AvbAudioBuffer(const std::string &name, sonvex::BufferConfiguration &configuration)
    : bufferName(name), configuration(&configuration), samples(configuration.getBufferSize(), 0.0F) {
    connect(&configuration, SIGNAL(configurationChanged(std::string)), this,
            SLOT(sampleAmountConfigChanged(std::string)));
    logging::debug("avb::AvbAudioBuffer::AvbAudioBuffer", bufferName, "Initialized");
}

AvbAudioBuffer::~AvbAudioBuffer() {
    logging::debug("avb::AvbAudioBuffer::~AvbAudioBuffer", bufferName, "CLEARED");
}

void AvbAudioBuffer::writeSample(const float &sample) {
    writeSamples(&sample, 1);
}

void AvbAudioBuffer::writeSamples(const float *values, std::size_t amount) {
    const std::lock_guard<std::mutex> lock(mutex);
    const std::uint32_t signalAmount = configuration->getClockSignalingSampleAmount();
    while (amount > 0) {
        // Up to the next signal at most. The count meets the amount by equality, so after a wrap of 32 bits too.
        const std::uint32_t untilSignal = signalAmount - samplesSinceSignal;
        const bool signals = signalAmount != 0 && untilSignal != 0 && untilSignal <= amount;
        const std::size_t block = signals ? untilSignal : amount;
        store(values, block);
        samplesSinceSignal += static_cast<std::uint32_t>(block);
        if (signals) {
            signaledPosition = writePosition;
            samplesSinceSignal = 0; // before the signal, which may find no memory for its way
            Q_EMIT bufferAmountAvailable(bufferName, signalAmount);
        }
        values += block;
        amount -= block;
    }
}

void AvbAudioBuffer::store(const float *values, std::size_t amount) {
    if (samples.empty()) {
        return;
    }
    while (amount > 0) {
        if (writePosition == samples.size()) {
            writePosition = 0;
        }
        const std::size_t block = std::min(amount, samples.size() - writePosition);
        std::copy_n(values, block, samples.begin() + writePosition);
        writePosition += static_cast<std::uint32_t>(block);
        values += block;
        amount -= block;
    }
}

std::vector<float> AvbAudioBuffer::fetchSamples(std::size_t amount, std::size_t endPosition,
                                                std::vector<float> storage) const {
    amount = limitToSize(amount);
    const std::lock_guard<std::mutex> lock(mutex);
    copySamples(amount, endPosition, storage);
    return storage;
}

std::vector<float> AvbAudioBuffer::fetchLatestSamples(std::size_t amount, std::vector<float> storage) const {
    amount = limitToSize(amount);
    const std::lock_guard<std::mutex> lock(mutex);
    copySamples(amount, writePosition, storage);
    return storage;
}

std::vector<float> AvbAudioBuffer::fetchSignaledSamples(std::size_t amount, std::vector<float> storage) const {
    amount = limitToSize(amount);
    const std::lock_guard<std::mutex> lock(mutex);
    copySamples(amount, signaledPosition, storage);
    return storage;
}

void AvbAudioBuffer::retire() {
    disconnect(configuration, nullptr, this, nullptr);
    QCoreApplication::removePostedEvents(this); // notices from other threads that are on their way
}

sonvex::BufferConfiguration *AvbAudioBuffer::getBufferConfiguration() const {
    return configuration;
}

std::size_t AvbAudioBuffer::limitToSize(std::size_t amount) const {
    if (amount > samples.size()) {
        logging::warning("avb::AvbAudioBuffer::fetchSamples", bufferName,
                         "More samples requested than available by the buffer. ",
                         "Only maximum available amount will be returned: ", samples.size(), " instead of ", amount);
        return samples.size();
    }
    return amount;
}

void AvbAudioBuffer::copySamples(std::size_t amount, std::size_t endPosition, std::vector<float> &block) const {
    const auto cell = [this](std::size_t position) { return samples.begin() + static_cast<std::ptrdiff_t>(position); };
    endPosition = std::min(endPosition, samples.size());
    if (endPosition == 0) {
        block.assign(cell(0), cell(amount));
    } else if (endPosition >= amount) {
        block.assign(cell(endPosition - amount), cell(endPosition));
    } else {
        block.reserve(amount);
        block.assign(cell(samples.size() - (amount - endPosition)), samples.end());
        block.insert(block.end(), cell(0), cell(endPosition));
    }
}

void AvbAudioBuffer::sampleAmountConfigChanged(std::string changedParameter) {
    static constexpr char context[] = "avb::AvbAudioBuffer::sampleAmountConfigChanged";
    if (changedParameter != sonvex::notices::signalingSampleAmountChanged) {
        return;
    }
    {
        const std::lock_guard<std::mutex> lock(mutex);
        samplesSinceSignal = 0;
    }
    const unsigned int amount = configuration->getClockSignalingSampleAmount();
    if (amount == 0) {
        logging::debug(context, bufferName, "Signaling sample amount deactivated (external clock OFF)");
    } else {
        logging::debug(context, bufferName, "Signaling sample amount changed to: ", amount, " samples");
    }
}

} // namespace avb
