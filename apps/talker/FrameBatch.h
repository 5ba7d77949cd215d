#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <sys/socket.h>

namespace talker {

/// Frames that are sent together, up to an amount. It refers to their bytes, and allocates nothing but at first.
class FrameBatch {
public:
    explicit FrameBatch(std::size_t capacity) : parts(capacity), messages(capacity) {}

    void clear() { used = 0; }
    /// @pre there is room
    void add(const std::uint8_t *bytes, std::size_t size);

    std::size_t size() const { return used; }
    /// As sendmmsg takes them.
    mmsghdr *data() { return messages.data(); }

private:
    std::vector<iovec> parts;
    std::vector<mmsghdr> messages;
    std::size_t used = 0;
};

} // namespace talker
