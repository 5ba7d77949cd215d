#pragma once

#include <string>

namespace analyser {

enum class AdapterState {
    /// Not one of the system's interfaces, as for the capture library's own pseudo adapters.
    unknown,
    up,
    down,
    noLink,
    gone
};

/// Asks the system how a network adapter is.
class AdapterProbe {
public:
    explicit AdapterProbe(std::string newName);

    AdapterState state() const;

private:
    std::string name;
    bool existed;
};

} // namespace analyser
