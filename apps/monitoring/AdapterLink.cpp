#include "monitoring/AdapterLink.h"

#include <optional>
#include <utility>

#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include "common/FileDescriptor.h"

namespace monitoring {

namespace {

/// Nothing for what is no interface.
std::optional<short> interfaceFlags(const std::string &name) {
    ifreq request{};
    if (name.size() >= sizeof(request.ifr_name)) {
        return std::nullopt;
    }
    name.copy(request.ifr_name, name.size());
    const common::FileDescriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    const bool answered = ::ioctl(socket.get(), SIOCGIFFLAGS, &request) == 0;
    return answered ? std::optional(request.ifr_flags) : std::nullopt;
}

} // namespace

AdapterLink::AdapterLink(std::string adapter) : name(std::move(adapter)), existed(interfaceFlags(name).has_value()) {}

AdapterLink::State AdapterLink::state() const {
    const auto flags = interfaceFlags(name);
    if (!flags) {
        return existed ? State::gone : State::unknown;
    }
    if ((*flags & IFF_UP) == 0) {
        return State::down;
    }
    return (*flags & IFF_RUNNING) == 0 ? State::noLink : State::up;
}

} // namespace monitoring
