#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <pcap/pcap.h>

namespace support {

/// The 16-bit code of a sample of a channel in a frame.
using CodeSource = std::function<std::int16_t(unsigned sample, unsigned channel)>;

/// A frame of a standard audio stream from @p mac (12 hexadecimal digits).
std::vector<std::uint8_t> makeFrame(const std::string &mac, std::uint8_t sequence, unsigned channels,
                                    unsigned samplesPerChannel, const CodeSource &codes);

/// Hands the bytes to @p receive as a capture would, from memory that ends with the frame, so that a sanitizer sees
/// every read past it.
template <class Receiver>
void capture(Receiver &receiver, const std::vector<std::uint8_t> &frame, std::uint32_t wireLength) {
    const std::vector<std::uint8_t> exact(frame);
    pcap_pkthdr header{};
    header.caplen = static_cast<bpf_u_int32>(exact.size());
    header.len = wireLength;
    receiver.receivePacket(nullptr, &header, exact.data());
}

template <class Receiver>
void capture(Receiver &receiver, const std::vector<std::uint8_t> &frame) {
    capture(receiver, frame, static_cast<std::uint32_t>(frame.size()));
}

} // namespace support
