#include "discovery/AvtpPacket.h"

#include <array>

namespace discovery {

namespace {

using Kind = StreamFormat::Kind;

constexpr std::size_t audioHeader = 24; // bytes of AAF and IEC 61883, from the subtype on
constexpr std::size_t clockHeader = 20;
constexpr std::size_t shortHeader = 12; // up to the stream ID's end

bool isControl(unsigned subtype) {
    return subtype == 0xfa || subtype == 0xfb || subtype == 0xfc || subtype == 0xfe;
}

StreamFormat::Kind kindOf(unsigned subtype) {
    switch (subtype) {
    case 0x00:
        return Kind::iec61883;
    case 0x02:
        return Kind::aaf;
    case 0x04:
        return Kind::clockReference;
    default:
        return Kind::other;
    }
}

std::size_t headerSize(Kind kind) {
    switch (kind) {
    case Kind::aaf:
    case Kind::iec61883:
        return audioHeader;
    case Kind::clockReference:
        return clockHeader;
    default:
        return shortHeader;
    }
}

} // namespace

AvtpPacket::AvtpPacket(Bytes payload, std::size_t wireSize) {
    const unsigned flags = payload.byte(1);
    format.subtype = payload.byte(0);
    format.kind = kindOf(format.subtype);
    if (payload.size() < 2) {
        return;
    }
    if (isControl(format.subtype)) {
        content = Content::control;
        return;
    }
    if ((flags & 0x70U) != 0) {
        content = Content::otherVersion;
        return;
    }
    if (payload.size() < headerSize(format.kind)) {
        return;
    }
    content = Content::stream;
    if ((flags & 0x80U) != 0) {
        id = payload.array<8>(4);
    }
    if (format.subtype < 0x80) { // the control formats number otherwise, if at all
        sequence = payload.byte(2);
        restart = (flags & 0x08U) != 0;
    }
    if (format.kind == Kind::aaf || format.kind == Kind::iec61883) {
        uncertain = (payload.byte(3) & 0x01U) != 0;
        if ((flags & 0x01U) != 0) {
            timestamp = static_cast<std::uint32_t>(payload.number(12, 4));
        }
        readDataLength(payload, 20, audioHeader, wireSize);
    }
    if (format.kind == Kind::aaf) {
        readAaf(payload);
    } else if (format.kind == Kind::iec61883) {
        readIec61883(payload);
    } else if (format.kind == Kind::clockReference) {
        uncertain = (flags & 0x01U) != 0;
        readDataLength(payload, 16, clockHeader, wireSize);
        readClockReference(payload);
    }
}

void AvtpPacket::readDataLength(Bytes payload, std::size_t offset, std::size_t dataOffset, std::size_t wireSize) {
    dataLength = payload.word(offset);
    isWhole = wireSize >= dataOffset + *dataLength;
}

void AvtpPacket::readAaf(Bytes payload) {
    format.code = payload.byte(16);
    format.sparseTimestamps = (payload.byte(22) & 0x10U) != 0;
    if (const auto *rate = common::find(common::aafRates, &common::AafRate::code, payload.byte(17) >> 4U)) {
        format.rate = rate->hertz;
    }
    // Where time stamps are sparse, the frames between those that have one may hold anything.
    if (format.sparseTimestamps && *sequence % 8 != 0) {
        timestamp.reset();
    }
    const auto *known = format.samples();
    if (known == nullptr) {
        return; // the other fields depend on the format
    }
    format.channels = payload.word(17) & 0x3ffU;
    format.bitDepth = payload.byte(19);
    const unsigned block = *format.channels * known->bytes;
    if (block > 0 && *dataLength % block == 0) {
        samples = *dataLength / block;
    }
}

void AvtpPacket::readIec61883(Bytes payload) {
    constexpr std::size_t packetHeader = audioHeader; // its own, of 8 bytes
    constexpr unsigned packetHeaderSize = 8;
    constexpr std::uint8_t audioAndMusic = 0x10;
    constexpr std::array<double, 7> rates{32000, 44100, 48000, 88200, 96000, 176400, 192000};
    const bool hasPacketHeader = payload.byte(22) >> 6U == 1;
    if (!hasPacketHeader || payload.size() < packetHeader + packetHeaderSize || *dataLength < packetHeaderSize) {
        format.code = 0xff;
        return;
    }
    format.code = payload.byte(packetHeader + 4) & 0x3fU;
    if (format.code != audioAndMusic) {
        return;
    }
    const unsigned field = payload.byte(packetHeader + 5);
    if (field < rates.size()) {
        format.rate = rates[field];
    }
    format.channels = payload.byte(packetHeader + 1);
    const unsigned block = *format.channels * 4;
    if (block > 0 && (*dataLength - packetHeaderSize) % block == 0) {
        samples = (*dataLength - packetHeaderSize) / block;
    }
}

void AvtpPacket::readClockReference(Bytes payload) {
    constexpr std::uint8_t audioSample = 1;
    constexpr std::array<double, 6> factors{1, 1 / 1.001, 1.001, 24.0 / 25, 25.0 / 24, 1.0 / 8};
    format.code = payload.byte(3);
    const auto frequency = static_cast<double>(payload.number(12, 4) & 0x1fffffffU);
    const unsigned pull = payload.byte(12) >> 5U;
    if (format.code == audioSample && pull < factors.size() && frequency > 0) {
        format.rate = frequency * factors[pull];
    }
    constexpr unsigned timestampSize = 8;
    if (*dataLength >= timestampSize && *dataLength % timestampSize == 0) {
        samples = *dataLength / timestampSize * payload.word(18);
        if (payload.size() >= clockHeader + timestampSize) {
            timestamp = static_cast<std::uint32_t>(payload.number(clockHeader + 4, 4));
        }
    }
}

} // namespace discovery
