#include "discovery/EthernetFrame.h"

#include <algorithm>

namespace discovery {

namespace {

constexpr std::size_t typeOffset = 12;
constexpr std::size_t tagSize = 4;

bool isTag(std::uint16_t etherType) {
    return etherType == 0x8100 || etherType == 0x88a8 || etherType == 0x9100;
}

} // namespace

EthernetFrame::EthernetFrame(Bytes frame, std::size_t wholeSize)
    : destination(frame.array<6>(0)), source(frame.array<6>(6)), etherType(frame.word(typeOffset)) {
    std::size_t offset = typeOffset;
    if (etherType == 0x8100) {
        const unsigned control = frame.word(offset + 2);
        tag = VlanTag{control & 0xfffU, control >> 13U};
        offset += tagSize;
        etherType = frame.word(offset);
    }
    offset += sizeof etherType;
    if (frame.size() < offset) {
        flaw = Flaw::incomplete;
    } else if (isTag(etherType)) { // a provider's tag in front, too
        flaw = Flaw::severalTags;
    }
    payload = frame.from(offset);
    wireSize = std::max(wholeSize, frame.size()) - std::min(offset, frame.size());
}

} // namespace discovery
