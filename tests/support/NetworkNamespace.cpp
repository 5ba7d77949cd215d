#include "support/NetworkNamespace.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <system_error>

#include <arpa/inet.h>
#include <linux/if_packet.h>
#include <net/ethernet.h>
#include <net/if.h>
#include <poll.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace support {

namespace {

[[noreturn]] void fail(const std::string &action) {
    throw std::system_error(errno, std::generic_category(), action);
}

void writeFile(const std::string &path, const std::string &text) {
    if (!(std::ofstream(path) << text << std::flush)) {
        fail(path);
    }
}

/// Children that are started by exec keep their rights only as the user 0 of the namespace.
void unshareAsUser() {
    const std::string user = std::to_string(geteuid());
    const std::string group = std::to_string(getegid());
    if (unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) {
        fail("unshare");
    }
    writeFile("/proc/self/setgroups", "deny");
    writeFile("/proc/self/uid_map", "0 " + user + " 1");
    writeFile("/proc/self/gid_map", "0 " + group + " 1");
}

class Socket {
public:
    Socket(int domain, int type, int protocol) : descriptor(socket(domain, type | SOCK_CLOEXEC, protocol)) {
        if (descriptor < 0) {
            fail("socket");
        }
    }
    ~Socket() { close(descriptor); }
    Socket(const Socket &) = delete;
    Socket &operator=(const Socket &) = delete;

    const int descriptor;
};

/// A socket for all frames that pass an adapter in either direction.
class FrameSocket : public Socket {
public:
    explicit FrameSocket(const std::string &adapter) : Socket(AF_PACKET, SOCK_RAW, 0) {
        sockaddr_ll address = {};
        address.sll_family = AF_PACKET;
        address.sll_protocol = htons(ETH_P_ALL);
        address.sll_ifindex = static_cast<int>(if_nametoindex(adapter.c_str()));
        if (address.sll_ifindex == 0 ||
            bind(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof(address)) != 0) {
            fail("adapter " + adapter);
        }
    }
};

void runIp(const std::string &arguments) {
    const std::string command = "ip " + arguments;
    if (std::system(command.c_str()) != 0) {
        throw std::runtime_error("failed: " + command);
    }
}

} // namespace

void enterNetworkNamespace() {
    try {
        if (unshare(CLONE_NEWNET) != 0) {
            unshareAsUser();
        }
        setInterfaceUp("lo", true);
    } catch (const std::exception &error) {
        std::cerr << "No network namespace for the tests: " << error.what()
                  << ". Run them as root, or allow user namespaces with 'sysctl user.max_user_namespaces=10000'.\n";
        std::exit(1);
    }
}

void makeVethPair(const std::string &name, const std::string &peer) {
    runIp("link add " + name + " type veth peer name " + peer);
    setInterfaceUp(name, true);
    setInterfaceUp(peer, true);
    waitForLink(name);
    waitForLink(peer);
}

void removeInterface(const std::string &name) {
    runIp("link del " + name);
}

void setInterfaceUp(const std::string &name, bool up) {
    const Socket control(AF_INET, SOCK_DGRAM, 0);
    ifreq request = {};
    name.copy(request.ifr_name, IFNAMSIZ - 1);
    bool done = ioctl(control.descriptor, SIOCGIFFLAGS, &request) == 0;
    request.ifr_flags = static_cast<short>(up ? request.ifr_flags | IFF_UP : request.ifr_flags & ~IFF_UP);
    done = done && ioctl(control.descriptor, SIOCSIFFLAGS, &request) == 0;
    if (!done) {
        fail("adapter " + name);
    }
}

void waitForLink(const std::string &name) {
    // The kernel reports a link some time before its queue takes frames, so only a frame that leaves proves it.
    std::array<unsigned char, 60> probe = {};
    probe[12] = 0x88; // EtherType for local experiments
    probe[13] = 0xb5;
    const FrameSocket sender(name);
    const FrameSocket listener(name);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (std::chrono::steady_clock::now() < deadline) {
        send(sender.descriptor, probe.data(), probe.size(), 0);
        pollfd event = {listener.descriptor, POLLIN, 0};
        while (poll(&event, 1, 5) == 1) {
            std::array<unsigned char, 60> frame = {};
            if (recv(listener.descriptor, frame.data(), frame.size(), 0) < 0) {
                fail("adapter " + name);
            }
            if (frame == probe) {
                return;
            }
        }
    }
    throw std::runtime_error("adapter " + name + " has no link");
}

} // namespace support
