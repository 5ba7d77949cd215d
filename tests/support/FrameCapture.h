#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace support {

/// Receives the AVTP frames that arrive at an adapter from the construction on, with their tags, without any code under
/// test.
/// Some hundred small frames may wait to be received, what comes after them is lost.
class FrameCapture {
public:
    using Frame = std::vector<std::uint8_t>;

    explicit FrameCapture(const std::string &adapter);
    ~FrameCapture();
    FrameCapture(const FrameCapture &) = delete;
    FrameCapture &operator=(const FrameCapture &) = delete;

    /// The next frames in order; fewer than the amount if 10 s pass without one.
    std::vector<Frame> receive(std::size_t amount);

private:
    int socket_;
};

} // namespace support
