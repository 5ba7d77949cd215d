#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

struct pcap;

namespace talker {

/// The frames of a capture file, pcap or pcapng, one after the other.
class CaptureFile {
public:
    struct Frame {
        std::chrono::nanoseconds time; ///< since the epoch; later than the year 2255 it is cut
        const std::uint8_t *bytes;
        std::size_t size;
        bool isComplete; ///< the capture has cut it otherwise
    };

    /// @throws common::Refusal for a file that can't be read, that holds no frames or those of another network
    explicit CaptureFile(const std::string &path);

    /// The next frame, which lasts until the next call, or null at the end.
    /// @throws std::runtime_error if the file is broken there
    const Frame *next();

private:
    struct Close {
        void operator()(pcap *opened) const;
    };

    const Frame *read();

    std::string path;
    std::unique_ptr<pcap, Close> handle;
    Frame frame = {};
    bool isFirst = true;
};

} // namespace talker
