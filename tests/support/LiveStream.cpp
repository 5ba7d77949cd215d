#include "support/LiveStream.h"

#include <utility>

#include "support/Frames.h"
#include "support/loopback.h"

namespace support {

namespace {

constexpr unsigned bufferSize = 48000;

std::string nextMac() {
    static int number = 1000; // of four digits for as long as anybody repeats a test
    return "02000000" + std::to_string(++number);
}

} // namespace

LiveStream::LiveStream(unsigned channels, unsigned signaledAmount, Signal signal, const std::string &adapter,
                       const std::string &farEnd)
    : mac(nextMac()), channels(channels),
      buffer(sonvex::IBufferConfiguration::createInstance("buffer", bufferSize, signaledAmount)),
      device(sonvex::IDeviceConfiguration::createInstance("device", buffer, 2, channels, samplesPerPacket)),
      capture(ISonvex::createInstance().addRemoteStreamReceiver(
          sonvex::IStreamConfiguration::createInstance("stream", mac, networkDevice(adapter), device))),
      signal(std::move(signal)), socket(farEnd) {}

void LiveStream::send(unsigned packets, unsigned dropped) {
    packet += dropped;
    for (unsigned i = 0; i < packets; ++i, ++packet) {
        const auto frame = makeFrame(
            mac, static_cast<std::uint8_t>(packet), channels, samplesPerPacket,
            [this](unsigned sample, unsigned channel) { return signal(packet * samplesPerPacket + sample, channel); });
        socket.send(frame.data(), frame.size());
    }
}

sonvex::ihandles::IProcessorHandle &
LiveStream::add(const std::string &name, sonvex::iprocess::IProcessorConfigBase &config, unsigned char channel) const {
    return ISonvex::createInstance().addProcessor(
        sonvex::IProcessConfiguration::createInstance(name, config, mac, channel));
}

} // namespace support
