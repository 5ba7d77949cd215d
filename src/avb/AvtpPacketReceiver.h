#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "avb/ArrivalClock.h"
#include "avb/AvbAudioBuffer.h"
#include "avb/AvbToFloatSampleConverter.h"
#include "avb/AvtpFrame.h"
#include "avb/AvtpPacketChecker.h"
#include "core/facts/StreamFacts.h"
#include "core/messages/BaseMessage.h"
#include "pcapplus/PcapPacketReceiverBase.h"
#include "threading/Worker.h"

namespace sonvex {
class DeviceConfiguration;
} // namespace sonvex

namespace avb {

/// Whether a stream has its buffers, and the sentence that says so.
struct BufferAvailability {
    bool available;
    std::string text;
};

/**
 * The data plane: decides whether a captured frame belongs to one of its streams, checks it, and spreads its samples
 * over the buffers of the stream's channels. Streams are told apart by their source address and are only ever added.
 *
 * Threads: addStreamingDevice() and getAudioBuffer() run on the host's thread; receivePacket() and everything below it
 * on capture threads, of which several may come at once and go through frameMutex one by one; the worker's thread
 * relays the checkers' messages. A capture thread walks the newest stream table, which never changes once it is
 * published; adding a stream publishes another one and neither waits for a frame nor makes one wait.
 */
class AvtpPacketReceiver : public threading::Worker, public pcapplus::PcapPacketReceiverBase {
    Q_OBJECT

public:
    /// @param avtpSubtype frames of other subtypes are dropped without a word
    AvtpPacketReceiver(std::uint8_t avtpSubtype, QObject *parent);
    ~AvtpPacketReceiver() override;

    /**
     * @param mac the stream's source address as 12 hexadecimal digits; the key of the stream, letter for letter
     * @param configuration not owned; has to live as long as frames of the stream can arrive
     * @param facts not null; what becomes of the stream's frames is counted there, from the start
     * @throws exceptions::InstanceAlreadyExists for a stream that was added before
     * @throws exceptions::InstanceNotCreateable for a device without channels, or with more than there is memory for
     */
    void addStreamingDevice(const std::string &mac, sonvex::DeviceConfiguration &configuration,
                            const std::shared_ptr<facts::StreamFacts> &facts = std::make_shared<facts::StreamFacts>());
    /// The buffer of a channel, counted from 0; owned by this receiver. @throws exceptions::ResourceNotAvailable
    AvbAudioBuffer *getAudioBuffer(const std::string &mac, unsigned int channelNumber) const;
    BufferAvailability checkBufferAvailability(const std::string &mac) const;
    /// No buffer looks at its configuration any more, which may go then. After the last frame.
    void retire();

    void receivePacket(u_char *user, const pcap_pkthdr *header, const u_char *bytes) override;
    void extractAvtpPacketData(const AvtpFrame &frame);
    /// The delivered amount of channels, or 0 if the frame must not be extracted. This and the next are for callers
    /// that know a stream by its text; not while captures deliver.
    std::int32_t performPreDataExtractionChecks(const std::string &mac, std::uint32_t maximumChannelAmount,
                                                std::uint32_t samplesPerChannel, std::uint32_t bytesPerSample);
    void writeAudioSamplesToBuffer(const AvtpFrame &frame, const std::string &mac);

    std::string getReceiverName() const override;
    void onDeviceBound(int deviceNumber) override;
    std::string toString() const override;

public Q_SLOTS:
    void end() override;
    void progress() override;

Q_SIGNALS:
    /// What the checkers emit, relayed on the worker's thread.
    void message(std::shared_ptr<sonvex::BaseMessage> message);

private:
    /// Declared so that the buffers go before the checker.
    struct Stream {
        std::shared_ptr<AvtpPacketChecker> checker;
        const sonvex::DeviceConfiguration *configuration;
        std::vector<std::shared_ptr<AvbAudioBuffer>> buffers; ///< by channel number
    };
    /// Never changes once it is published, but for its scratch.
    struct StreamTable {
        std::map<std::string, Stream> byMac;
        mutable std::vector<float> channelSamples; ///< one channel's samples of a frame; guarded by frameMutex
    };

    const StreamTable &streams() const { return *publishedStreams.load(std::memory_order_acquire); }
    void publish(const std::string &mac, sonvex::DeviceConfiguration &configuration,
                 const std::shared_ptr<facts::StreamFacts> &facts);
    const Stream *findStream(const std::string &mac) const;
    std::int32_t checkStream(const std::string &mac, const Stream &stream, std::uint32_t maximumChannelAmount,
                             std::uint32_t samplesPerChannel, std::uint32_t bytesPerSample) const;
    void refuseDataLength(const std::string &mac) const;
    void writeSamples(const AvtpFrame &frame, const std::string &mac, const Stream &stream, float *channelSamples);

    /// All tables that were ever published, the newest last: a capture may be walking any of them.
    std::vector<std::unique_ptr<const StreamTable>> streamTables;
    std::atomic<const StreamTable *> publishedStreams;

    std::mutex frameMutex; ///< guards missedPackets, the clock and the state of all checkers; captures alone take it
    std::uint32_t missedPackets = 0; ///< of all streams together
    ArrivalClock arrivalClock;

    std::uint8_t avtpSubtype;
    AvbToFloatSampleConverter sampleConverter;
};

} // namespace avb
