#pragma once

#include <cstdint>
#include <string>

#include "common/MacAddress.h"
#include "talker/FrameFormat.h"

namespace live {

/// Streams of one format side by side, each frame of them in turn.
struct Traffic {
    static constexpr unsigned classA = 8000; ///< frames a second of a stream
    static constexpr unsigned vlan = 2;
    static constexpr unsigned vlanPriority = 3;

    talker::FrameFormat format;
    unsigned streams = 8;
    bool tagged = false;
    unsigned rate = 8 * classA;     ///< frames a second, of all streams
    unsigned batchesASecond = 1000; ///< in which they are sent

    static common::MacAddress address(unsigned stream) {
        return {0x02, 0, 0, 0, 0, static_cast<std::uint8_t>(stream + 1)};
    }
    static std::string mac(unsigned stream) { return common::toString(address(stream)); }
};

} // namespace live
