#include "support/FrameCapture.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <system_error>

#include <arpa/inet.h>
#include <linux/if_ether.h>
#include <linux/if_packet.h>
#include <net/if.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace support {

FrameCapture::FrameCapture(const std::string &adapter) : socket_(socket(AF_PACKET, SOCK_RAW | SOCK_CLOEXEC, 0)) {
    // A socket that is bound to AVTP's protocol would not see the tags.
    sockaddr_ll address = {};
    address.sll_family = AF_PACKET;
    address.sll_protocol = htons(ETH_P_ALL);
    address.sll_ifindex = static_cast<int>(if_nametoindex(adapter.c_str()));
    const int queue = 64 * 1024 * 1024; // as much of it as the system grants
    const int enable = 1;
    if (setsockopt(socket_, SOL_SOCKET, SO_RCVBUF, &queue, sizeof(queue)) != 0 ||
        setsockopt(socket_, SOL_PACKET, PACKET_AUXDATA, &enable, sizeof(enable)) != 0 ||
        setsockopt(socket_, SOL_PACKET, PACKET_IGNORE_OUTGOING, &enable, sizeof(enable)) != 0 ||
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
        alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(tpacket_auxdata))> control = {};
        iovec part = {buffer.data(), buffer.size()};
        msghdr message = {nullptr, 0, &part, 1, control.data(), control.size(), 0};
        const ssize_t size = recvmsg(socket_, &message, 0);
        if (size < 0) {
            break;
        }
        if (size < 14 || buffer[12] != 0x22 || buffer[13] != 0xf0) {
            continue;
        }
        frames.emplace_back(buffer.begin(), buffer.begin() + size);
        // The kernel takes tags off and tells them beside.
        tpacket_auxdata beside = {};
        std::memcpy(&beside, CMSG_DATA(CMSG_FIRSTHDR(&message)), sizeof(beside));
        if ((beside.tp_status & TP_STATUS_VLAN_VALID) != 0) {
            const auto tag = {0x81, 0x00, beside.tp_vlan_tci >> 8, beside.tp_vlan_tci & 0xff};
            frames.back().insert(frames.back().begin() + 12, tag.begin(), tag.end());
        }
    }
    return frames;
}

} // namespace support
