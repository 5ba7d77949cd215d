#include "avb/AvtpPacketReceiver.h"

#include <algorithm>
#include <limits>
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

} // namespace

AvtpPacketReceiver::AvtpPacketReceiver(std::uint8_t avtpSubtype, QObject *parent)
    : Worker(std::string("AvtpPacketReceiver ") + unbound, parent), avtpSubtype(avtpSubtype) {
    streamTables.push_back(std::make_unique<const StreamTable>());
    publishedStreams = streamTables.back().get();
    logging::debug("avb::AvtpPacketReceiver::AvtpPacketReceiver", getName(), "Initialized");
}

AvtpPacketReceiver::~AvtpPacketReceiver() {
    logging::debug("avb::AvtpPacketReceiver::~AvtpPacketReceiver", getName(), "CLEARED!");
    std::vector<std::shared_ptr<AvtpPacketChecker>> checkers; // all buffers go before the first checker
    for (const auto &entry : streams().byMac) {
        checkers.push_back(entry.second.checker);
    }
    streamTables.clear();
}

void AvtpPacketReceiver::addStreamingDevice(const std::string &mac, sonvex::DeviceConfiguration &configuration,
                                            const std::shared_ptr<facts::StreamFacts> &facts) {
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
        publish(mac, configuration, facts);
    } catch (const std::bad_alloc &) {
        refuse();
    } catch (const std::length_error &) { // an amount beyond all memory
        refuse();
    }
}

void AvtpPacketReceiver::publish(const std::string &mac, sonvex::DeviceConfiguration &configuration,
                                 const std::shared_ptr<facts::StreamFacts> &facts) {
    const unsigned int channels = configuration.getAmountOfChannels();
    Stream stream{std::make_shared<AvtpPacketChecker>(mac, channels, nullptr, facts), &configuration, {}};
    connect(stream.checker.get(), &AvtpPacketChecker::message, this, &AvtpPacketReceiver::message);
    for (unsigned int channel = 0; channel < channels; ++channel) {
        stream.buffers.push_back(std::make_shared<AvbAudioBuffer>(mac + "_Ch" + std::to_string(channel),
                                                                  *configuration.getBufferConfiguration()));
    }
    const std::uint64_t samplesPerChannel = configuration.getAmountOfSamplesPerChannel();
    auto table = std::make_unique<StreamTable>();
    table->byMac = streams().byMac;
    table->byMac.emplace(mac, std::move(stream));
    table->channelSamples.resize(
        std::max<std::size_t>(streams().channelSamples.size(), std::min(samplesPerChannel, maximumDataLength)));
    streamTables.push_back(std::move(table));
    facts->begin(); // when nothing can fail any more
    publishedStreams.store(streamTables.back().get(), std::memory_order_release);
}

AvbAudioBuffer *AvtpPacketReceiver::getAudioBuffer(const std::string &mac, unsigned int channelNumber) const {
    static constexpr char context[] = "avb::AvtpPacketReceiver::getAudioBuffer";
    const Stream *stream = findStream(mac);
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
    for (const auto &entry : streams().byMac) {
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
    const std::lock_guard<std::mutex> lock(frameMutex);
    extractAvtpPacketData(frame);
}

void AvtpPacketReceiver::extractAvtpPacketData(const AvtpFrame &frame) {
    const StreamTable &table = streams();
    bool known = false;
    for (const auto &[mac, stream] : table.byMac) {
        if (!stream.checker->isPacketConform(frame)) {
            continue;
        }
        known = true;
        stream.checker->streamFacts().arrived(frame.captureTime(), arrivalClock.steadyTime(frame.captureTime()));
        if (stream.checker->isSequenceNrInOrder(frame)) {
            writeSamples(frame, mac, stream, table.channelSamples.data());
            return;
        }
        ++missedPackets;
        logging::warning("avb::AvtpPacketReceiver::extractAvtpPacketData", getName(),
                         "Packets missed: ", missedPackets);
    }
    if (!known) {
        pcapplus::CapturingAdapter::countFrameOfNoStream();
    }
}

std::int32_t AvtpPacketReceiver::performPreDataExtractionChecks(const std::string &mac,
                                                                std::uint32_t maximumChannelAmount,
                                                                std::uint32_t samplesPerChannel,
                                                                std::uint32_t bytesPerSample) {
    const Stream *stream = findStream(mac);
    if (stream == nullptr) {
        logging::warning("avb::AvtpPacketReceiver::performPreDataExtractionChecks", getName(),
                         "The amount of AVTP packet requirements cannot be checked! The required ",
                         "packet data and boundary check instance is not available for device: ", mac);
        return 0;
    }
    return checkStream(mac, *stream, maximumChannelAmount, samplesPerChannel, bytesPerSample);
}

void AvtpPacketReceiver::writeAudioSamplesToBuffer(const AvtpFrame &frame, const std::string &mac) {
    const Stream *stream = findStream(mac);
    if (stream == nullptr) {
        logging::warning("avb::AvtpPacketReceiver::writeAudioSamplesToBuffer", getName(),
                         "Cannot store samples to buffer: ", checkBufferAvailability(mac).text,
                         " No buffer exists for the given device.");
        return;
    }
    writeSamples(frame, mac, *stream, streams().channelSamples.data());
}

std::int32_t AvtpPacketReceiver::checkStream(const std::string &mac, const Stream &stream,
                                             std::uint32_t maximumChannelAmount, std::uint32_t samplesPerChannel,
                                             std::uint32_t bytesPerSample) const {
    constexpr std::uint32_t signedMaximum = std::numeric_limits<std::int32_t>::max();
    const auto maximum = static_cast<std::int32_t>(std::min(maximumChannelAmount, signedMaximum));
    const std::int32_t channels = stream.checker->checkChannelAmount(maximum);
    // Cut to just above what a frame can declare, so that the product fits; such a length never agrees.
    const std::uint64_t bytesPerChannel =
        std::min(std::uint64_t{samplesPerChannel} * bytesPerSample, maximumDataLength + 1);
    if (!stream.checker->checkDataLength(static_cast<std::uint64_t>(channels) * bytesPerChannel)) {
        if (channels != 0) { // or the frame is refused for that
            stream.checker->streamFacts().refused(sonvex::FrameRefusal::DataLength);
        }
        refuseDataLength(mac);
        return 0;
    }
    return channels;
}

void AvtpPacketReceiver::refuseDataLength(const std::string &mac) const {
    logging::warning("avb::AvtpPacketReceiver::performPreDataExtractionChecks", getName(),
                     "The transferred AVTP stream data length is unexpected! ",
                     "Packet audio data won't be extracted for device: ", mac);
}

void AvtpPacketReceiver::writeSamples(const AvtpFrame &frame, const std::string &mac, const Stream &stream,
                                      float *channelSamples) {
    const std::uint32_t bytesPerSample = stream.configuration->getSampleSizeInBytes();
    const std::uint32_t samplesPerChannel = stream.configuration->getAmountOfSamplesPerChannel();
    const auto channels = static_cast<std::size_t>(
        checkStream(mac, stream, stream.configuration->getAmountOfChannels(), samplesPerChannel, bytesPerSample));
    if (channels == 0) {
        return;
    }
    facts::StreamFacts &facts = stream.checker->streamFacts();
    const std::size_t stride = channels * bytesPerSample;
    const std::uint64_t dataLength = std::uint64_t{stride} * samplesPerChannel;
    if (dataLength == 0) {
        facts.taken();
        return; // a configuration without width or samples: there is nothing in the frame
    }
    const std::uint8_t *bytes = frame.samples(dataLength);
    if (bytes == nullptr) {
        facts.refused(sonvex::FrameRefusal::IncompleteSamples);
        refuseDataLength(mac);
        return;
    }
    for (std::size_t channel = 0; channel < channels; ++channel) {
        sampleConverter.convertBlock(bytes + channel * bytesPerSample, bytesPerSample, stride, samplesPerChannel,
                                     channelSamples);
        stream.buffers[channel]->writeSamples(channelSamples, samplesPerChannel);
    }
    facts.taken();
}

const AvtpPacketReceiver::Stream *AvtpPacketReceiver::findStream(const std::string &mac) const {
    const auto &byMac = streams().byMac;
    const auto entry = byMac.find(mac);
    return entry == byMac.end() ? nullptr : &entry->second;
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
