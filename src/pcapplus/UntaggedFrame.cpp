#include "pcapplus/UntaggedFrame.h"

#include <cstring>

namespace pcapplus {

namespace {

constexpr unsigned customerTag = 0x8100;

/// Of IEEE 802.1Q and 802.1ad, and of what bridges used before.
bool isTag(unsigned type) {
    return type == customerTag || type == 0x88A8 || type == 0x9100 || type == 0x9200;
}

} // namespace

void UntaggedFrame::removeTag() {
    const unsigned type = typeAt(typeOffset);
    if (!isTag(type)) {
        return;
    }
    const std::uint32_t leastSize = ethernetHeaderSize + tagSize;
    readable = type == customerTag && capturedHeader->caplen >= leastSize && capturedHeader->len >= leastSize &&
               !isTag(typeAt(typeOffset + tagSize));
    if (!readable) {
        return;
    }
    removedTag = static_cast<int>(typeAt(typeOffset + 2));
    shorterHeader = *capturedHeader;
    shorterHeader.caplen -= tagSize;
    shorterHeader.len -= tagSize;
    capturedHeader = &shorterHeader;
    // The bytes are the capture's to change until the next frame: libpcap itself has moved them to insert the tag.
    auto *const writable = const_cast<u_char *>(frameBytes);
    std::memmove(writable + tagSize, writable, typeOffset);
    frameBytes += tagSize;
}

} // namespace pcapplus
