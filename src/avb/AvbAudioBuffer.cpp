#include "avb/AvbAudioBuffer.h"

#include <algorithm>
#include <limits>
#include <utility>

#include <QCoreApplication>

#include "core/configuration/BufferConfiguration.h"
#include "core/data/ChangeNotices.h"
#include "core/logging/Log.h"

namespace avb {

AvbAudioBuffer::AvbAudioBuffer(const std::string &name, sonvex::BufferConfiguration &configuration,
                               unsigned int sampleRate)
    : bufferName(name), configuration(&configuration), sampleRate(sampleRate), samples(configuration.getBufferSize()) {
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
    const bool staysInRing = amount <= samples.size() - writePosition;
    if (!staysInRing || amount > amountBeforeSignal() || countAnew.load(std::memory_order_relaxed)) {
        writeInParts(values, amount);
        return;
    }
    const std::uint64_t count = begin(amount);
    samples.write(writePosition, values, amount);
    samples.expectWrite(writePosition + 2 * amount, amount);
    writePosition += static_cast<std::uint32_t>(amount);
    samplesSinceSignal += static_cast<std::uint32_t>(amount);
    written.store(count, std::memory_order_release);
}

void AvbAudioBuffer::writeInParts(const float *values, std::size_t amount) {
    if (countAnew.exchange(false, std::memory_order_relaxed)) {
        samplesSinceSignal = 0;
    }
    const std::uint32_t signalAmount = configuration->getClockSignalingSampleAmount();
    while (amount > amountBeforeSignal()) {
        const std::size_t block = amountBeforeSignal() + 1;
        store(values, block);
        signaled.store(written.load(std::memory_order_relaxed), std::memory_order_release);
        samplesSinceSignal = 0; // before the signal, which may find no memory for its way
        Q_EMIT bufferAmountAvailable(bufferName, signalAmount);
        values += block;
        amount -= block;
    }
    store(values, amount);
    samplesSinceSignal += static_cast<std::uint32_t>(amount);
}

std::size_t AvbAudioBuffer::amountBeforeSignal() const {
    const std::uint32_t signalAmount = configuration->getClockSignalingSampleAmount();
    // The count meets the amount by equality, so after a wrap of 32 bits too.
    return signalAmount == 0 ? std::numeric_limits<std::size_t>::max() : signalAmount - samplesSinceSignal - 1;
}

std::uint64_t AvbAudioBuffer::begin(std::size_t amount) {
    const std::uint64_t count = begun.load(std::memory_order_relaxed) + amount;
    begun.store(count, std::memory_order_relaxed);
    return count;
}

void AvbAudioBuffer::store(const float *values, std::size_t amount) {
    if (samples.size() == 0) {
        return;
    }
    const std::uint64_t count = begin(amount);
    while (amount > 0) {
        if (writePosition == samples.size()) {
            writePosition = 0;
        }
        const std::size_t block = std::min(amount, samples.size() - writePosition);
        samples.write(writePosition, values, block);
        writePosition += static_cast<std::uint32_t>(block);
        values += block;
        amount -= block;
    }
    written.store(count, std::memory_order_release);
}

std::vector<float> AvbAudioBuffer::fetchSamples(std::size_t amount, std::size_t endPosition,
                                                std::vector<float> storage) const {
    endPosition = std::min(endPosition, samples.size());
    return fetch(
        amount, [endPosition](std::uint64_t /*count*/) { return endPosition; }, std::move(storage));
}

std::vector<float> AvbAudioBuffer::fetchLatestSamples(std::size_t amount, std::vector<float> storage) const {
    return fetch(
        amount, [this](std::uint64_t count) { return positionBehind(count); }, std::move(storage));
}

std::vector<float> AvbAudioBuffer::fetchSignaledSamples(std::size_t amount, std::vector<float> storage) const {
    return fetch(
        amount, [this](std::uint64_t /*count*/) { return positionBehind(signaled.load(std::memory_order_acquire)); },
        std::move(storage));
}

template <class EndPosition>
std::vector<float> AvbAudioBuffer::fetch(std::size_t amount, EndPosition endPosition,
                                         std::vector<float> storage) const {
    constexpr int mostTries = 100;
    amount = limitToSize(amount);
    storage.resize(amount);
    for (int tries = 0; tries < mostTries; ++tries) {
        const std::uint64_t count = written.load(std::memory_order_acquire);
        const std::size_t end = endPosition(count);
        // End 0 stands for the untouched ring, which is read from its first cell.
        const std::size_t first = end == 0 ? 0 : end >= amount ? end - amount : end + samples.size() - amount;
        copyCells(first, storage);
        if (!wereWritten(first, amount, count)) {
            break;
        }
    }
    return storage;
}

void AvbAudioBuffer::copyCells(std::size_t first, std::vector<float> &block) const {
    const std::size_t untilWrap = std::min(block.size(), samples.size() - first);
    samples.read(first, block.data(), untilWrap);
    samples.read(0, block.data() + untilWrap, block.size() - untilWrap);
}

bool AvbAudioBuffer::wereWritten(std::size_t first, std::size_t amount, std::uint64_t since) const {
    const std::uint64_t writtenSince = begun.load(std::memory_order_relaxed) - since;
    if (writtenSince == 0 || amount == 0) {
        return false;
    }
    const std::size_t firstWritten = since % samples.size();
    const std::size_t blockBehindWriter = (first + samples.size() - firstWritten) % samples.size();
    const std::size_t writerBehindBlock = (firstWritten + samples.size() - first) % samples.size();
    return blockBehindWriter < writtenSince || writerBehindBlock < amount;
}

std::size_t AvbAudioBuffer::positionBehind(std::uint64_t sampleCount) const {
    return sampleCount == 0 || samples.size() == 0 ? 0 : (sampleCount - 1) % samples.size() + 1;
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

void AvbAudioBuffer::sampleAmountConfigChanged(std::string changedParameter) {
    static constexpr char context[] = "avb::AvbAudioBuffer::sampleAmountConfigChanged";
    if (changedParameter != sonvex::notices::signalingSampleAmountChanged) {
        return;
    }
    countAnew.store(true, std::memory_order_relaxed);
    const unsigned int amount = configuration->getClockSignalingSampleAmount();
    if (amount == 0) {
        logging::debug(context, bufferName, "Signaling sample amount deactivated (external clock OFF)");
    } else {
        logging::debug(context, bufferName, "Signaling sample amount changed to: ", amount, " samples");
    }
}

} // namespace avb
