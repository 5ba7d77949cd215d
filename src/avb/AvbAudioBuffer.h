#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <QObject>

#include "avb/SampleRing.h"

namespace sonvex {
class BufferConfiguration;
} // namespace sonvex

namespace avb {

/**
 * The newest samples of one channel, as a ring of fixed size, and a sample clock for those who read it. Reading takes
 * a copy and consumes nothing. Cells that were never written read as 0.0.
 *
 * Threads: a capture thread writes, one at a time, processors' threads fetch, the host's thread changes the signaling.
 * Nobody waits: a capture that did, for a reader that the system has put aside, would lose frames. So a reader copies,
 * looks whether the writer has come into its cells meanwhile, and copies again if so. bufferAmountAvailable is emitted
 * on the capture's thread.
 */
class AvbAudioBuffer : public QObject {
    Q_OBJECT

public:
    /// @param configuration not owned; the signaling amount is read anew at each write
    /// @param sampleRate of the stream, in Hz
    AvbAudioBuffer(const std::string &name, sonvex::BufferConfiguration &configuration,
                   unsigned int sampleRate = 48000);
    ~AvbAudioBuffer() override;

    void writeSample(const float &sample);
    /// As writeSample for each of @p amount values in turn.
    void writeSamples(const float *values, std::size_t amount);

    /// The @p amount samples before cell @p endPosition, the oldest first; at most the size of the buffer, and as they
    /// all stood at one moment, unless the writer is so fast that it comes into them at each of many tries. All three
    /// fetch into @p storage, so that a reader who hands its last block over needs no new memory.
    std::vector<float> fetchSamples(std::size_t amount, std::size_t endPosition, std::vector<float> storage = {}) const;
    /// The newest samples: for readers on a clock of their own.
    std::vector<float> fetchLatestSamples(std::size_t amount, std::vector<float> storage = {}) const;
    /// The samples up to the latest signal: for readers that the signal drives.
    std::vector<float> fetchSignaledSamples(std::size_t amount, std::vector<float> storage = {}) const;

    /// Looks at the configuration no more, which may go then. Nothing is written or fetched afterwards.
    void retire();

    /// In samples; fixed.
    std::size_t getSize() const { return samples.size(); }
    unsigned int getSampleRate() const { return sampleRate; }
    sonvex::BufferConfiguration *getBufferConfiguration() const;

Q_SIGNALS:
    /// The buffer's name and the signaling amount, each time that many samples have arrived.
    void bufferAmountAvailable(std::string, std::size_t);

protected Q_SLOTS:
    void sampleAmountConfigChanged(std::string changedParameter);

private:
    template <class EndPosition>
    std::vector<float> fetch(std::size_t amount, EndPosition endPosition, std::vector<float> storage) const;
    std::size_t limitToSize(std::size_t amount) const;
    std::size_t positionBehind(std::uint64_t sampleCount) const;
    void copyCells(std::size_t first, std::vector<float> &block) const;
    bool wereWritten(std::size_t first, std::size_t amount, std::uint64_t since) const;
    void writeInParts(const float *values, std::size_t amount);
    std::size_t amountBeforeSignal() const;
    std::uint64_t begin(std::size_t amount);
    void store(const float *values, std::size_t amount);

    std::string bufferName;
    sonvex::BufferConfiguration *configuration;
    unsigned int sampleRate;

    // Of the writer, side by side.
    SampleRing samples;
    std::uint32_t writePosition = 0;      ///< behind the newest sample: 1 to the size once something was written
    std::uint32_t samplesSinceSignal = 0; ///< counts while the signaling is off, too

    // Counts of samples since the construction, the writer's for its readers.
    std::atomic<std::uint64_t> begun{0};
    std::atomic<std::uint64_t> written{0};
    std::atomic<std::uint64_t> signaled{0}; ///< written at the latest signal

    std::atomic<bool> countAnew{false}; ///< the host's, for the writer
};

} // namespace avb
