#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include <QObject>

namespace sonvex {
class BufferConfiguration;
} // namespace sonvex

namespace avb {

/**
 * The newest samples of one channel, as a ring of fixed size, and a sample clock for those who read it. Reading takes
 * a copy and consumes nothing. Cells that were never written read as 0.0.
 *
 * Threads: a capture thread writes, processors' threads fetch, the host's thread changes the signaling. The mutex
 * guards the ring and its positions. bufferAmountAvailable is emitted with the mutex held: its receivers must be
 * queued.
 */
class AvbAudioBuffer : public QObject {
    Q_OBJECT

public:
    /// @param configuration not owned; the signaling amount is read anew at each write
    AvbAudioBuffer(const std::string &name, sonvex::BufferConfiguration &configuration);
    ~AvbAudioBuffer() override;

    void writeSample(const float &sample);
    /// As writeSample for each of @p amount values in turn, under one lock.
    void writeSamples(const float *values, std::size_t amount);

    /// The @p amount samples before cell @p endPosition, the oldest first; at most the size of the buffer. All three
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
    sonvex::BufferConfiguration *getBufferConfiguration() const;

Q_SIGNALS:
    /// The buffer's name and the signaling amount, each time that many samples have arrived.
    void bufferAmountAvailable(std::string, std::size_t);

protected Q_SLOTS:
    void sampleAmountConfigChanged(std::string changedParameter);

private:
    std::size_t limitToSize(std::size_t amount) const;
    void copySamples(std::size_t amount, std::size_t endPosition, std::vector<float> &block) const;
    void store(const float *values, std::size_t amount);

    std::string bufferName;
    sonvex::BufferConfiguration *configuration;
    std::vector<float> samples;
    std::uint32_t writePosition = 0;      ///< behind the newest sample: 1 to the size once something was written
    std::uint32_t samplesSinceSignal = 0; ///< counts while the signaling is off, too
    std::uint32_t signaledPosition = 0;   ///< writePosition at the latest signal
    mutable std::mutex mutex;
};

} // namespace avb
