#include "talker/RawSocket.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

#include <linux/if_ether.h>
#include <linux/if_packet.h>
#include <net/if.h>
#include <net/if_arp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include "common/Refusal.h"
#include "common/rawSocketRemedy.h"

namespace talker {

namespace {

std::string knownAdapters() {
    std::string names;
    if (struct if_nameindex *adapters = if_nameindex()) {
        for (const struct if_nameindex *adapter = adapters; adapter->if_name != nullptr; ++adapter) {
            names += (names.empty() ? "" : ", ") + std::string(adapter->if_name);
        }
        if_freenameindex(adapters);
    }
    return names;
}

/// A socket of protocol 0, which receives nothing.
int openSocket(const std::string &device) {
    if (if_nametoindex(device.c_str()) == 0) {
        throw common::Refusal("unknown adapter '" + device + "', there are: " + knownAdapters());
    }
    const int descriptor = socket(AF_PACKET, SOCK_RAW | SOCK_CLOEXEC, 0);
    if (descriptor < 0) {
        const int error = errno;
        throw common::Refusal("cannot send raw frames on '" + device + "': " + std::generic_category().message(error) +
                              (error == EPERM ? common::rawSocketRemedy : ""));
    }
    return descriptor;
}

} // namespace

RawSocket::RawSocket(const std::string &device) : device(device), socket(openSocket(device)) {
    const auto require = [&device](bool done) {
        if (!done) {
            throw common::Refusal("adapter '" + device + "': " + std::generic_category().message(errno));
        }
    };
    ifreq request = {};
    device.copy(request.ifr_name, IFNAMSIZ - 1);
    require(ioctl(socket.get(), SIOCGIFMTU, &request) == 0);
    mtu = static_cast<std::size_t>(request.ifr_mtu);

    require(ioctl(socket.get(), SIOCGIFHWADDR, &request) == 0);
    if (request.ifr_hwaddr.sa_family != ARPHRD_ETHER && request.ifr_hwaddr.sa_family != ARPHRD_LOOPBACK) {
        throw common::Refusal("adapter '" + device + "' does not carry Ethernet frames");
    }
    takesTagsBeside = request.ifr_hwaddr.sa_family == ARPHRD_ETHER; // the kernel asks no more of these, and no less
    std::copy_n(request.ifr_hwaddr.sa_data, address.size(), address.begin());

    sockaddr_ll target = {};
    target.sll_family = AF_PACKET;
    target.sll_ifindex = static_cast<int>(if_nametoindex(device.c_str()));
    require(bind(socket.get(), reinterpret_cast<const sockaddr *>(&target), sizeof(target)) == 0);
}

bool RawSocket::takes(const std::uint8_t *bytes, std::size_t size) const {
    const bool tagged = (bytes[ETH_HLEN - 2] << 8 | bytes[ETH_HLEN - 1]) == VlanTag::protocol;
    return size <= ETH_HLEN + (tagged ? VlanTag::size : 0) + getMtu(tagged);
}

void RawSocket::send(const std::uint8_t *bytes, std::size_t size) {
    ssize_t sent = 0;
    do {
        sent = ::send(socket.get(), bytes, size, 0);
    } while (sent < 0 && errno == EINTR);
    if (sent < 0) {
        fail();
    }
}

void RawSocket::send(FrameBatch &batch, std::uint64_t &sent) {
    for (std::size_t done = 0; done < batch.size();) {
        const int amount = ::sendmmsg(socket.get(), batch.data() + done, static_cast<unsigned>(batch.size() - done), 0);
        if (amount < 0 && errno != EINTR) {
            fail();
        }
        done += static_cast<std::size_t>(std::max(amount, 0));
        sent += static_cast<std::uint64_t>(std::max(amount, 0));
    }
}

void RawSocket::fail() const {
    throw std::system_error(errno, std::generic_category(), "sending on '" + device + "' failed");
}

} // namespace talker
