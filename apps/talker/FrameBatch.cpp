#include "talker/FrameBatch.h"

namespace talker {

void FrameBatch::add(const std::uint8_t *bytes, std::size_t size) {
    parts[used] = {const_cast<std::uint8_t *>(bytes), size}; // the system only reads them
    messages[used] = {};
    messages[used].msg_hdr.msg_iov = &parts[used];
    messages[used].msg_hdr.msg_iovlen = 1;
    ++used;
}

} // namespace talker
