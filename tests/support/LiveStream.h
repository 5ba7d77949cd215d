#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include <sonvex/sonvex.h>

#include "talker/RawSocket.h"

namespace support {

/// A stream of its own on the process's one facade, with a talker for it: on the loopback adapter, or from one end of a
/// pair to the other.
class LiveStream {
public:
    static constexpr unsigned samplesPerPacket = 6;

    /// The 16-bit code of a sample of a channel, counted from the start of the stream.
    using Signal = std::function<std::int16_t(std::size_t sample, unsigned channel)>;

    LiveStream(unsigned channels, unsigned signaledAmount, Signal signal, const std::string &adapter = "lo",
               const std::string &farEnd = "lo");

    /// Sends the next packets; the sequence and the samples of dropped ones are used up.
    void send(unsigned packets, unsigned dropped = 0);

    sonvex::ihandles::IProcessorHandle &add(const std::string &name, sonvex::iprocess::IProcessorConfigBase &config,
                                            unsigned char channel) const;

    const std::string mac;
    const unsigned channels;
    sonvex::IBufferConfiguration &buffer;
    sonvex::IDeviceConfiguration &device;
    sonvex::ihandles::INetworkReceiverHandle &capture;

private:
    Signal signal;
    talker::RawSocket socket;
    std::size_t packet = 0;
};

} // namespace support
