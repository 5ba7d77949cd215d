#pragma once

#include <memory>
#include <string>
#include <vector>

#include "avb/AvbAudioBuffer.h"
#include "avb/AvtpPacketChecker.h"

namespace sonvex {
class DeviceConfiguration;
} // namespace sonvex

namespace avb {

/// One stream of a receiver: its key, what checks its frames, and where its samples go. Declared so that the buffers go
/// before the checker.
struct AvtpStream {
    std::string key; ///< the text of its address or of its stream ID
    std::shared_ptr<AvtpPacketChecker> checker;
    const sonvex::DeviceConfiguration *configuration;
    std::vector<std::shared_ptr<AvbAudioBuffer>> buffers; ///< by channel number
};

} // namespace avb
