#pragma once

#include <optional>
#include <string>

namespace monitoring {

/// A message of the library, as values.
struct Message {
    struct ChannelAmount {
        unsigned configured;
        int before;
        int after;
    };

    std::string name;
    std::string id;
    std::string type;
    std::string details;
    std::optional<ChannelAmount> change;
    std::optional<std::string> text; ///< of a status
};

} // namespace monitoring
