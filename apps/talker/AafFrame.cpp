#include "talker/AafFrame.h"

#include <algorithm>
#include <stdexcept>

namespace talker {

AafFrame::AafFrame(const common::MacAddress &source, const common::MacAddress &destination, const FrameFormat &format)
    : format(format) {
    std::copy(destination.begin(), destination.end(), bytes.begin() + VlanTag::size);
    std::copy(source.begin(), source.end(), bytes.begin() + VlanTag::size + destination.size());
    write16(pdu - 2, 0x22f0);
    bytes[pdu] = 0x02; // AAF
    setStreamValid(true);
    setTimestampValid(true);
    std::copy(source.begin(), source.end(), bytes.begin() + pdu + 4);
    setFormat(format);
}

void AafFrame::setTag(const VlanTag &tag) {
    constexpr std::size_t addresses = 2 * std::tuple_size_v<common::MacAddress>;
    std::copy_n(bytes.begin() + VlanTag::size, addresses, bytes.begin());
    write16(addresses, VlanTag::protocol);
    write16(addresses + 2, static_cast<std::uint16_t>(tag.priority << 13 | tag.id));
    tagged = true;
}

void AafFrame::setStreamId(const common::StreamId &id) {
    std::copy(id.begin(), id.end(), bytes.begin() + pdu + 4);
}

void AafFrame::setFormat(const FrameFormat &newFormat) {
    const auto *const rate = common::find(common::aafRates, &common::AafRate::hertz, newFormat.rate);
    if (newFormat.channels < 1 || newFormat.channels > FrameFormat::maxChannels || newFormat.samplesPerChannel < 1 ||
        newFormat.samplesPerChannel > FrameFormat::maxSamplesPerChannel ||
        newFormat.dataLength() > FrameFormat::maxDataLength || rate == nullptr) {
        throw std::out_of_range("no AAF frame has this format");
    }
    format = newFormat;
    bytes[pdu + 16] = format.sample.code;
    write16(pdu + 17, static_cast<std::uint16_t>(rate->code << 12 | format.channels)); // ten bits of channels
    bytes[pdu + 19] = static_cast<std::uint8_t>(8 * format.sample.bytes);              // all of the bits are used
    setDataLength(static_cast<std::uint16_t>(format.dataLength()));
}

void AafFrame::setTimestamp(std::uint32_t timestamp) {
    write16(pdu + 12, static_cast<std::uint16_t>(timestamp >> 16));
    write16(pdu + 14, static_cast<std::uint16_t>(timestamp));
}

} // namespace talker
