#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "avb/ArrivalClock.h"
#include "avb/AvbAudioBuffer.h"
#include "avb/AvbToFloatSampleConverter.h"
#include "avb/AvtpFrame.h"
#include "avb/AvtpStream.h"
#include "avb/StreamIndex.h"
#include "core/facts/StreamFacts.h"
#include "core/messages/BaseMessage.h"
#include "pcapplus/PcapPacketReceiverBase.h"
#include "threading/BriefLock.h"
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
 * over the buffers of the stream's channels. Streams are told apart by their source address or by their stream ID, and
 * are only ever added. A frame goes to the stream of its ID and to that of its address, if both are there.
 *
 * Threads: addStreamingDevice() and getAudioBuffer() run on the host's thread, which alone touches the map of streams;
 * receivePacket() and everything below it on capture threads, of which several may come at once and go through
 * frameLock one by one; the worker's thread relays the checkers' messages. A capture finds streams by the indices,
 * which frameLock guards, too: adding a stream holds it for as long as an exchange of pointers takes.
 */
class AvtpPacketReceiver : public threading::Worker, public pcapplus::PcapPacketReceiverBase {
    Q_OBJECT

public:
    /// @param avtpSubtype frames of other subtypes are dropped without a word
    AvtpPacketReceiver(std::uint8_t avtpSubtype, QObject *parent);
    ~AvtpPacketReceiver() override;

    /**
     * @param mac the stream's source address as 12 hexadecimal digits, or the text of its stream ID; the key of the
     * stream, letter for letter
     * @param configuration not owned; has to live as long as frames of the stream can arrive
     * @param facts not null; what becomes of the stream's frames is counted there, from the start
     * @param streamId tells the frames of the stream, if there is one
     * @throws exceptions::InstanceAlreadyExists for a stream that was added before
     * @throws exceptions::InstanceNotCreateable for a device without channels, or with more than there is memory for
     */
    void addStreamingDevice(const std::string &mac, sonvex::DeviceConfiguration &configuration,
                            const std::shared_ptr<facts::StreamFacts> &facts = std::make_shared<facts::StreamFacts>(),
                            const std::optional<sonvex::StreamId> &streamId = {});
    /// The buffer of a channel, counted from 0; owned by this receiver. @throws exceptions::ResourceNotAvailable
    AvbAudioBuffer *getAudioBuffer(const std::string &mac, unsigned int channelNumber) const;
    BufferAvailability checkBufferAvailability(const std::string &mac) const;
    /// No buffer looks at its configuration any more, which may go then. After the last frame.
    void retire();

    void receivePacket(u_char *user, const pcap_pkthdr *header, const u_char *bytes) override;
    void extractAvtpPacketData(const AvtpFrame &frame);
    /// The delivered amount of channels, or 0 if the frame must not be extracted.
    std::int32_t performPreDataExtractionChecks(const AvtpStream &stream, std::uint32_t maximumChannelAmount,
                                                std::uint32_t samplesPerChannel, std::uint32_t bytesPerSample) const;
    void writeAudioSamplesToBuffer(const AvtpFrame &frame, const AvtpStream &stream);
    /// These two are for callers that know a stream by its text; not while captures deliver.
    std::int32_t performPreDataExtractionChecks(const std::string &mac, std::uint32_t maximumChannelAmount,
                                                std::uint32_t samplesPerChannel, std::uint32_t bytesPerSample) const;
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
    /// What captures find streams by.
    struct Indices {
        StreamIndex byAddress;
        StreamIndex byStreamId;
    };

    AvtpStream makeStream(const std::string &mac, sonvex::DeviceConfiguration &configuration,
                          const std::shared_ptr<facts::StreamFacts> &facts,
                          const std::optional<sonvex::StreamId> &streamId);
    Indices makeIndices() const;
    const AvtpStream *findStream(const std::string &mac) const;
    bool extract(const AvtpFrame &frame, const StreamIndex::Candidates &candidates);
    void refuseDataLength(const std::string &mac) const;

    std::map<std::string, AvtpStream> streams; ///< by key

    threading::BriefLock frameLock; ///< guards everything down to frameSamples, and the state of all checkers
    Indices indices;
    std::uint32_t missedPackets = 0; ///< of all streams together
    ArrivalClock arrivalClock;
    std::vector<float> frameSamples; ///< of one frame, channel by channel

    std::uint8_t avtpSubtype;
    AvbToFloatSampleConverter sampleConverter;
};

} // namespace avb
