#include "support/FrameCapture.h"

#include <cerrno>
#include <system_error>

#include <arpa/inet.h>
#include <linux/if_packet.h>
#include <net/if.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace support {

FrameCapture::FrameCapture(const std::string &adapter) : socket_(socket(AF_PACKET, SOCK_RAW | SOCK_CLOEXEC, 0)) {
    // Bound to one protocol, the socket sees only what arrives, not what is sent: on loopback each frame once.
    sockaddr_ll address = {};
    address.sll_family = AF_PACKET;
    address.sll_protocol = htons(0x22f0);
    address.sll_ifindex = static_cast<int>(if_nametoindex(adapter.c_str()));
    const int queue = 64 * 1024 * 1024; // as much of it as the system grants
    if (setsockopt(socket_, SOL_SOCKET, SO_RCVBUF, &queue, sizeof(queue)) != 0 ||
        bind(socket_, reinterpret_cast<const sockaddr *>(&address), sizeof(address)) != 0) {
        throw std::system_error(errno, std::generic_category(), "capture on " + adapter);
    }
}

FrameCapture::~FrameCapture() {
    close(socket_);
}

std::vector<FrameCapture::Frame> FrameCapture::receive(std::size_t amount) {
    std::vector<Frame> frames;
    Frame buffer(65536 + 14);
    pollfd event = {socket_, POLLIN, 0};
    while (frames.size() < amount && poll(&event, 1, 10'000) == 1) {
        const ssize_t size = recv(socket_, buffer.data(), buffer.size(), 0);
        if (size < 0) {
            break;
        }
        frames.emplace_back(buffer.begin(), buffer.begin() + size);
    }
    return frames;
}

} // namespace support
