#pragma once

#include <cstdint>

#include <pcap/pcap.h>

namespace pcapplus {

/**
 * A captured frame as its receivers know frames: without the one IEEE 802.1Q tag that it may have had. Every stream
 * with a reservation is tagged, and libpcap puts a tag that the system took off back into the bytes.
 *
 * Valid as long as the capture's bytes, of which the addresses are moved over the tag: nothing else is copied.
 */
class UntaggedFrame {
public:
    static constexpr int untagged = -1;

    UntaggedFrame(const pcap_pkthdr &header, const u_char *bytes) : capturedHeader(&header), frameBytes(bytes) {
        if (header.caplen >= ethernetHeaderSize && typeAt(typeOffset) != avtp) {
            removeTag();
        }
    }
    UntaggedFrame(const UntaggedFrame &) = delete;
    UntaggedFrame &operator=(const UntaggedFrame &) = delete;

    /// False for a frame with several tags, with one of another kind, and for one that ends in its tag: its fields are
    /// not where a receiver looks for them, or not there at all.
    bool isReadable() const { return readable; }
    const pcap_pkthdr &header() const { return *capturedHeader; }
    const u_char *bytes() const { return frameBytes; }
    /// Priority (3 bits), drop eligibility (1 bit) and VLAN ID (12 bits), or untagged.
    int tag() const { return removedTag; }

private:
    static constexpr std::uint32_t typeOffset = 12;
    static constexpr std::uint32_t ethernetHeaderSize = 14;
    static constexpr std::uint32_t tagSize = 4;
    static constexpr unsigned avtp = 0x22F0;

    unsigned typeAt(std::uint32_t offset) const {
        return static_cast<unsigned>(frameBytes[offset] << 8 | frameBytes[offset + 1]);
    }
    void removeTag();

    const pcap_pkthdr *capturedHeader;
    const u_char *frameBytes;
    pcap_pkthdr shorterHeader; ///< only of a frame that had a tag
    int removedTag = untagged;
    bool readable = true;
};

} // namespace pcapplus
