#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

namespace endurance {

/**
 * Sends several streams of 48 kHz in real time from a thread of its own, and damages them on demand. It bears an
 * adapter that is down, and is made anew for one that has gone.
 */
class StreamTalker {
public:
    static constexpr unsigned channels = 8;
    static constexpr unsigned samplesPerPacket = 6;

    StreamTalker(std::string adapter, const std::vector<std::string> &macs);
    ~StreamTalker();
    StreamTalker(const StreamTalker &) = delete;
    StreamTalker &operator=(const StreamTalker &) = delete;

    /// Whether frames are left out, and others are sent that have to be refused.
    void setDamage(bool on) { damage = on; }
    void setPaused(bool on) { paused = on; }
    /// Frames that were left out so far: each is a gap of one frame in the sequence of its stream.
    std::uint64_t omitted() const { return omissions; }
    /// Frames so far that a receiver has to refuse.
    std::uint64_t damaged() const { return damages; }
    std::uint64_t sent() const { return frames; }

private:
    struct Stream {
        std::vector<std::uint8_t> frame;
        std::uint32_t packet = 0;
    };

    void run();

    const std::string adapter;
    std::vector<Stream> streams;
    std::atomic<bool> ended{false};
    std::atomic<bool> paused{false};
    std::atomic<bool> damage{false};
    std::atomic<std::uint64_t> omissions{0};
    std::atomic<std::uint64_t> damages{0};
    std::atomic<std::uint64_t> frames{0};
    std::thread thread;
};

} // namespace endurance
