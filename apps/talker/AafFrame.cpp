#include "talker/AafFrame.h"

#include <algorithm>
#include <stdexcept>

namespace talker {

AafFrame::AafFrame(const common::MacAddress &source, const common::MacAddress &destination, unsigned channels,
                   unsigned samplesPerChannel) {
    std::copy(destination.begin(), destination.end(), bytes.begin());
    std::copy(source.begin(), source.end(), bytes.begin() + 6);
    write16(12, 0x22f0);
    bytes[14] = 0x02; // AAF
    bytes[15] = 0x81; // stream ID and timestamp are valid
    std::copy(source.begin(), source.end(), bytes.begin() + 18);
    bytes[30] = 0x04; // 16-bit integer
    bytes[33] = 16;   // all of the bits are used
    setFormat(channels, samplesPerChannel);
}

void AafFrame::setFormat(unsigned channels, unsigned samplesPerChannel) {
    if (channels < 1 || channels > maxChannels || samplesPerChannel < 1 || samplesPerChannel > maxSamplesPerChannel ||
        dataLength(channels, samplesPerChannel) > maxDataLength) {
        throw std::out_of_range("no AAF frame has this format");
    }
    this->channels = channels;
    this->samplesPerChannel = samplesPerChannel;
    write16(31, static_cast<std::uint16_t>(0x5000 | channels)); // 48 kHz, then ten bits of channels
    setDataLength(static_cast<std::uint16_t>(dataLength(channels, samplesPerChannel)));
}

void AafFrame::setTimestamp(std::uint32_t timestamp) {
    write16(26, static_cast<std::uint16_t>(timestamp >> 16));
    write16(28, static_cast<std::uint16_t>(timestamp));
}

} // namespace talker
