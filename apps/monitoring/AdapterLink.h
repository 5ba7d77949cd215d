#pragma once

#include <string>

namespace monitoring {

/// Asks the system how a network adapter is.
class AdapterLink {
public:
    enum class State {
        /// Not one of the system's interfaces, as for the capture library's own pseudo adapters.
        unknown,
        up,
        down,
        noLink,
        gone
    };

    explicit AdapterLink(std::string adapter);

    State state() const;

private:
    std::string name;
    bool existed;
};

} // namespace monitoring
