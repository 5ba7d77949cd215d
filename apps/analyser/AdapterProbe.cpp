#include "analyser/AdapterProbe.h"

#include <optional>
#include <utility>

#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include "common/FileDescriptor.h"

namespace analyser {

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

AdapterProbe::AdapterProbe(std::string newName) : name(std::move(newName)), existed(interfaceFlags(name).has_value()) {}

AdapterState AdapterProbe::state() const {
    const auto flags = interfaceFlags(name);
    if (!flags) {
        return existed ? AdapterState::gone : AdapterState::unknown;
    }
    if ((*flags & IFF_UP) == 0) {
        return AdapterState::down;
    }
    return (*flags & IFF_RUNNING) == 0 ? AdapterState::noLink : AdapterState::up;
}

} // namespace analyser
