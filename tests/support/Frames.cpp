#include "support/Frames.h"

#include <algorithm>

namespace support {

std::vector<std::uint8_t> makeFrame(const std::string &mac, std::uint8_t sequence, unsigned channels,
                                    unsigned samplesPerChannel, const CodeSource &codes) {
    const unsigned dataLength = 2 * channels * samplesPerChannel;
    std::vector<std::uint8_t> frame = {0x91, 0xE0, 0xF0, 0x00, 0xFE, 0x00};
    for (std::size_t digit = 0; digit < 12; digit += 2) {
        frame.push_back(static_cast<std::uint8_t>(std::stoul(mac.substr(digit, 2), nullptr, 16)));
    }
    frame.insert(frame.end(), {0x22, 0xF0, 0x02, 0x81, sequence, 0x00});
    frame.resize(30);                                                     // stream ID and timestamp
    std::copy(frame.begin() + 6, frame.begin() + 12, frame.begin() + 18); // the source's first stream
    frame.insert(frame.end(),
                 {0x04, 0x50, static_cast<std::uint8_t>(channels), 16, static_cast<std::uint8_t>(dataLength >> 8),
                  static_cast<std::uint8_t>(dataLength), 0, 0});
    for (unsigned sample = 0; sample < samplesPerChannel; ++sample) {
        for (unsigned channel = 0; channel < channels; ++channel) {
            const auto code = static_cast<std::uint16_t>(codes(sample, channel));
            frame.push_back(static_cast<std::uint8_t>(code >> 8));
            frame.push_back(static_cast<std::uint8_t>(code));
        }
    }
    return frame;
}

} // namespace support
