#include "talker/AafFrame.h"

#include <algorithm>
#include <stdexcept>

namespace talker {

AafFrame::AafFrame(const common::MacAddress &source, const common::MacAddress &destination, const FrameFormat &format)
    : format(format) {
    std::copy(destination.begin(), destination.end(), bytes.begin());
    std::copy(source.begin(), source.end(), bytes.begin() + 6);
    write16(12, 0x22f0);
    bytes[14] = 0x02; // AAF
    bytes[15] = 0x81; // stream ID and timestamp are valid
    std::copy(source.begin(), source.end(), bytes.begin() + 18);
    setFormat(format);
}

void AafFrame::setFormat(const FrameFormat &newFormat) {
    const auto *const rate = common::find(common::aafRates, &common::AafRate::hertz, newFormat.rate);
    if (newFormat.channels < 1 || newFormat.channels > FrameFormat::maxChannels || newFormat.samplesPerChannel < 1 ||
        newFormat.samplesPerChannel > FrameFormat::maxSamplesPerChannel ||
        newFormat.dataLength() > FrameFormat::maxDataLength || rate == nullptr) {
        throw std::out_of_range("no AAF frame has this format");
    }
    format = newFormat;
    bytes[30] = format.sample.code;
    write16(31, static_cast<std::uint16_t>(rate->code << 12 | format.channels)); // ten bits of channels
    bytes[33] = static_cast<std::uint8_t>(8 * format.sample.bytes);              // all of the bits are used
    setDataLength(static_cast<std::uint16_t>(format.dataLength()));
}

void AafFrame::setTimestamp(std::uint32_t timestamp) {
    write16(26, static_cast<std::uint16_t>(timestamp >> 16));
    write16(28, static_cast<std::uint16_t>(timestamp));
}

} // namespace talker
