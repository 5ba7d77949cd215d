#include "avb/AvtpPacketReceiver.h"

#include <algorithm>
#include <limits>
#include <mutex>
#include <new>
#include <stdexcept>
#include <utility>

#include <sonvex/exceptions.h>

#include "core/configuration/DeviceConfiguration.h"
#include "core/logging/Log.h"
#include "pcapplus/CapturingAdapter.h"

namespace avb {

namespace {

constexpr char unbound[] = "(unbound)";

/// No data length field can say more.
constexpr std::uint64_t maximumDataLength = 0xFFFF;

/// Of a frame, in all its channels: those that can be converted have two bytes or more.
constexpr std::size_t mostSamples = maximumDataLength / 2;

} // namespace

AvtpPacketReceiver::AvtpPacketReceiver(std::uint8_t avtpSubtype, QObject *parent)
    : Worker(std::string("AvtpPacketReceiver ") + unbound, parent), frameSamples(mostSamples),
      avtpSubtype(avtpSubtype) {
    logging::debug("avb::AvtpPacketReceiver::AvtpPacketReceiver", getName(), "Initialized");
}

AvtpPacketReceiver::~AvtpPacketReceiver() {
    logging::debug("avb::AvtpPacketReceiver::~AvtpPacketReceiver", getName(), "CLEARED!");
    for (auto &entry : streams) { // all buffers go before the first checker
        entry.second.buffers.clear();
    }
}

void AvtpPacketReceiver::addStreamingDevice(const std::string &mac, sonvex::DeviceConfiguration &configuration,
                                            const std::shared_ptr<facts::StreamFacts> &facts,
                                            const std::optional<sonvex::StreamId> &streamId) {
    static constexpr char context[] = "avb::AvtpPacketReceiver::addStreamingDevice";
    const BufferAvailability availability = checkBufferAvailability(mac);
    if (availability.available) {
        const std::string text = availability.text + "! Device won't be added!";
        logging::refuse<exceptions::InstanceAlreadyExists>(context, text, getName());
    }
    const unsigned int channels = configuration.getAmountOfChannels();
    if (channels == 0) {
        const std::string text = "Invalid channel count '" + std::to_string(channels) + "' given for device by '" +
                                 configuration.getName() + "' for: " + mac + " Device not initialized!";
        logging::refuse<exceptions::InstanceNotCreateable>(context, text, getName());
    }
    const auto refuse = [&] {
        const std::string text = "No memory for the buffers of the device by '" + configuration.getName() +
                                 "' for: " + mac + " Device not initialized!";
        logging::refuse<exceptions::InstanceNotCreateable>(context, text, getName());
    };
    try {
        const auto added = streams.emplace(mac, makeStream(mac, configuration, facts, streamId)).first;
        try {
            Indices grown = makeIndices();
            facts->begin(); // when nothing can fail any more
            const std::lock_guard<threading::BriefLock> lock(frameLock);
            std::swap(indices, grown);
        } catch (...) {
            streams.erase(added);
            throw;
        }
    } catch (const std::bad_alloc &) {
        refuse();
    } catch (const std::length_error &) { // an amount beyond all memory
        refuse();
    }
}

AvtpStream AvtpPacketReceiver::makeStream(const std::string &mac, sonvex::DeviceConfiguration &configuration,
                                          const std::shared_ptr<facts::StreamFacts> &facts,
                                          const std::optional<sonvex::StreamId> &streamId) {
    const unsigned int channels = configuration.getAmountOfChannels();
    AvtpStream stream{mac,
                      streamId ? std::make_shared<AvtpPacketChecker>(*streamId, channels, nullptr, facts)
                               : std::make_shared<AvtpPacketChecker>(mac, channels, nullptr, facts),
                      &configuration,
                      {}};
    if (configuration.getSampleFormat()) {
        stream.checker->expectFormat(*configuration.getSampleFormat(), configuration.getSampleRate());
    }
    connect(stream.checker.get(), &AvtpPacketChecker::message, this, &AvtpPacketReceiver::message);
    for (unsigned int channel = 0; channel < channels; ++channel) {
        stream.buffers.push_back(std::make_shared<AvbAudioBuffer>(mac + "_Ch" + std::to_string(channel),
                                                                  *configuration.getBufferConfiguration(),
                                                                  configuration.getSampleRate()));
    }
    return stream;
}

AvtpPacketReceiver::Indices AvtpPacketReceiver::makeIndices() const {
    std::vector<StreamIndex::Entry> byAddress;
    std::vector<StreamIndex::Entry> byStreamId;
    for (const auto &entry : streams) {
        const AvtpPacketChecker &checker = *entry.second.checker;
        (checker.isToldByStreamId() ? byStreamId : byAddress).push_back({checker.getIdentity(), &entry.second});
    }
    return {StreamIndex(byAddress), StreamIndex(byStreamId)};
}

AvbAudioBuffer *AvtpPacketReceiver::getAudioBuffer(const std::string &mac, unsigned int channelNumber) const {
    static constexpr char context[] = "avb::AvtpPacketReceiver::getAudioBuffer";
    const AvtpStream *stream = findStream(mac);
    if (stream == nullptr) {
        const std::string text = checkBufferAvailability(mac).text;
        logging::refuse<exceptions::ResourceNotAvailable>(context, text, getName());
    }
    if (channelNumber >= stream->buffers.size()) {
        const std::string text = "No buffer available for the specified channel number '" +
                                 std::to_string(channelNumber) + "' at streaming device: " + mac;
        logging::refuse<exceptions::ResourceNotAvailable>(context, text, getName());
    }
    return stream->buffers[channelNumber].get();
}

BufferAvailability AvtpPacketReceiver::checkBufferAvailability(const std::string &mac) const {
    if (findStream(mac) != nullptr) {
        return {true, "Buffer already available for the specified device MAC address: " + mac};
    }
    return {false, "No buffer available for the specified device MAC address: " + mac};
}

void AvtpPacketReceiver::retire() {
    for (const auto &entry : streams) {
        for (const auto &buffer : entry.second.buffers) {
            buffer->retire();
        }
    }
}

void AvtpPacketReceiver::receivePacket(u_char * /*user*/, const pcap_pkthdr *header, const u_char *bytes) {
    const AvtpFrame frame(bytes, header->len, header->caplen,
                          std::int64_t{header->ts.tv_sec} * 1'000'000 + header->ts.tv_usec);
    if (!frame.holds(AvtpFrame::subtypeOffset, 1) || frame.byteAt(AvtpFrame::subtypeOffset) != avtpSubtype) {
        pcapplus::CapturingAdapter::countFrameOfNoStream();
        return;
    }
    const std::lock_guard<threading::BriefLock> lock(frameLock);
    extractAvtpPacketData(frame);
}

void AvtpPacketReceiver::extractAvtpPacketData(const AvtpFrame &frame) {
    const bool ofAddress = extract(frame, indices.byAddress.candidates(frame.source()));
    const bool ofStreamId = !indices.byStreamId.isEmpty() && frame.hasValidStreamId() &&
                            extract(frame, indices.byStreamId.candidates(frame.streamId()));
    if (!ofAddress && !ofStreamId) {
        pcapplus::CapturingAdapter::countFrameOfNoStream();
    }
}

bool AvtpPacketReceiver::extract(const AvtpFrame &frame, const StreamIndex::Candidates &candidates) {
    bool known = false;
    for (const StreamIndex::Entry &candidate : candidates) {
        const AvtpStream &stream = *candidate.stream;
        if (!stream.checker->isPacketConform(frame)) {
            continue;
        }
        known = true;
        facts::StreamFacts &facts = stream.checker->streamFacts();
        facts.arrived({frame.captureTime(), frame.timestamp(), frame.hasValidTimestamp(), frame.isTimestampUncertain(),
                       frame.mediaClockRestart()},
                      arrivalClock.steadyTime(frame.captureTime()), pcapplus::CapturingAdapter::getTag());
        if (frame.hasValidStreamId()) {
            facts.identified(frame.streamId());
        }
        if (stream.checker->isSequenceNrInOrder(frame)) {
            writeAudioSamplesToBuffer(frame, stream);
            return true;
        }
        ++missedPackets;
        logging::warning("avb::AvtpPacketReceiver::extractAvtpPacketData", getName(),
                         "Packets missed: ", missedPackets);
    }
    return known;
}

std::int32_t AvtpPacketReceiver::performPreDataExtractionChecks(const std::string &mac,
                                                                std::uint32_t maximumChannelAmount,
                                                                std::uint32_t samplesPerChannel,
                                                                std::uint32_t bytesPerSample) const {
    const AvtpStream *stream = findStream(mac);
    if (stream == nullptr) {
        logging::warning("avb::AvtpPacketReceiver::performPreDataExtractionChecks", getName(),
                         "The amount of AVTP packet requirements cannot be checked! The required ",
                         "packet data and boundary check instance is not available for device: ", mac);
        return 0;
    }
    return performPreDataExtractionChecks(*stream, maximumChannelAmount, samplesPerChannel, bytesPerSample);
}

void AvtpPacketReceiver::writeAudioSamplesToBuffer(const AvtpFrame &frame, const std::string &mac) {
    const AvtpStream *stream = findStream(mac);
    if (stream == nullptr) {
        logging::warning("avb::AvtpPacketReceiver::writeAudioSamplesToBuffer", getName(),
                         "Cannot store samples to buffer: ", checkBufferAvailability(mac).text,
                         " No buffer exists for the given device.");
        return;
    }
    writeAudioSamplesToBuffer(frame, *stream);
}

std::int32_t AvtpPacketReceiver::performPreDataExtractionChecks(const AvtpStream &stream,
                                                                std::uint32_t maximumChannelAmount,
                                                                std::uint32_t samplesPerChannel,
                                                                std::uint32_t bytesPerSample) const {
    AvtpPacketChecker &checker = *stream.checker;
    if (checker.expectsFormat() && !checker.checkFormat()) {
        return 0;
    }
    constexpr std::uint32_t signedMaximum = std::numeric_limits<std::int32_t>::max();
    const auto maximum = static_cast<std::int32_t>(std::min(maximumChannelAmount, signedMaximum));
    const std::int32_t channels = checker.checkChannelAmount(maximum);
    const std::uint64_t bytesAtOneTime = static_cast<std::uint64_t>(channels) * bytesPerSample;
    const auto delivered = static_cast<std::uint64_t>(checker.getLengthOfDeliveredAvtpPacketData());
    // Cut to just above what a frame can declare, so that the product fits; such a length never agrees.
    std::uint64_t expected = static_cast<std::uint64_t>(channels) *
                             std::min(std::uint64_t{samplesPerChannel} * bytesPerSample, maximumDataLength + 1);
    if (checker.expectsFormat() && samplesPerChannel == 0 && bytesAtOneTime != 0) {
        expected = std::max(delivered / bytesAtOneTime, std::uint64_t{1}) * bytesAtOneTime; // of whole samples
    }
    if (!checker.checkDataLength(expected)) {
        if (channels != 0) { // or the frame is refused for that
            checker.streamFacts().refused(sonvex::FrameRefusal::DataLength);
        }
        refuseDataLength(stream.key);
        return 0;
    }
    return channels;
}

void AvtpPacketReceiver::refuseDataLength(const std::string &mac) const {
    logging::warning("avb::AvtpPacketReceiver::performPreDataExtractionChecks", getName(),
                     "The transferred AVTP stream data length is unexpected! ",
                     "Packet audio data won't be extracted for device: ", mac);
}

void AvtpPacketReceiver::writeAudioSamplesToBuffer(const AvtpFrame &frame, const AvtpStream &stream) {
    const sonvex::DeviceConfiguration &device = *stream.configuration;
    const std::uint32_t bytesPerSample = device.getSampleSizeInBytes();
    const auto channels = static_cast<std::size_t>(performPreDataExtractionChecks(
        stream, device.getAmountOfChannels(), device.getAmountOfSamplesPerChannel(), bytesPerSample));
    if (channels == 0) {
        return;
    }
    facts::StreamFacts &facts = stream.checker->streamFacts();
    const auto dataLength = static_cast<std::size_t>(stream.checker->getLengthOfDeliveredAvtpPacketData());
    if (dataLength == 0) {
        facts.taken();
        return; // a configuration without width or samples: there is nothing in the frame
    }
    const std::uint8_t *bytes = frame.samples(dataLength);
    if (bytes == nullptr) {
        facts.refused(sonvex::FrameRefusal::IncompleteSamples);
        refuseDataLength(stream.key);
        return;
    }
    const std::uint32_t configured = device.getAmountOfSamplesPerChannel();
    const std::size_t samplesPerChannel =
        configured != 0 ? configured : dataLength / (channels * bytesPerSample); // a division takes long
    if (const auto format = device.getConvertedFormat()) {
        const std::size_t nonFinite =
            sampleConverter.convertFrame(bytes, *format, channels, samplesPerChannel, frameSamples.data());
        for (std::size_t channel = 0; channel < channels; ++channel) {
            stream.buffers[channel]->writeSamples(frameSamples.data() + channel * samplesPerChannel, samplesPerChannel);
        }
        if (nonFinite > 0) {
            facts.replacedNonFinite(nonFinite);
        }
    } else {
        for (std::size_t sample = 0; sample < channels * samplesPerChannel; ++sample) {
            stream.buffers[sample % channels]->writeSample(
                sampleConverter.convertFromBigEndian(bytes + sample * bytesPerSample, bytesPerSample));
        }
    }
    facts.taken();
}

const AvtpStream *AvtpPacketReceiver::findStream(const std::string &mac) const {
    const auto entry = streams.find(mac);
    return entry == streams.end() ? nullptr : &entry->second;
}

std::string AvtpPacketReceiver::getReceiverName() const {
    return getName();
}

void AvtpPacketReceiver::onDeviceBound(int deviceNumber) {
    std::string name = getName();
    const std::size_t position = name.find(unbound);
    if (position != std::string::npos) {
        setName(name.replace(position, sizeof unbound - 1, "(eth" + std::to_string(deviceNumber) + ")"));
    }
}

std::string AvtpPacketReceiver::toString() const {
    return "[" + getName() + "]";
}

void AvtpPacketReceiver::end() {
    logging::debug("avb::AvtpPacketReceiver::end", getName(), "Packet receiver forced to end");
    Q_EMIT finished();
}

void AvtpPacketReceiver::progress() {
    logging::debug("avb::AvtpPacketReceiver::progress", getName(), "Packet receiver progress started");
}

} // namespace avb
