#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace talker {

/// What the command line asks for where a capture file is to be sent.
struct ReplayOptions {
    std::string device;
    std::string path;
    std::optional<std::uint64_t> frames;              ///< at most so many
    std::optional<std::chrono::nanoseconds> duration; ///< those before this moment
};

} // namespace talker
