#pragma once

#include "avb/AvtpPacketReceiver.h"
#include "engine/streaming/NetworkReceiverHandle.h"
#include "pcapplus/PcapPacketSniffer.h"
#include "threading/Controller.h"

namespace engine::streaming {

/**
 * One adapter's capture and the reception of the streams on it, in one object with a handle for the host.
 *
 * Threads: it is built, used and destroyed on the host's thread, where its sniffer part stays; its worker part lives on
 * the thread of its own controller, which does not own it. Destruction first takes the receiver out of the way of
 * frames, then ends the worker's thread, then closes the adapter.
 */
class NetworkReceiver : public avb::AvtpPacketReceiver, public pcapplus::PcapPacketSniffer {
public:
    /// Opens the adapter; isConfigured() tells whether that worked. An empty filter expression sets no filter.
    NetworkReceiver(const pcapplus::PcapDeviceInfo &deviceInfo, std::uint8_t avtpSubtype, std::string filterExpression);
    ~NetworkReceiver() override;

    std::string toString() const override;

    NetworkReceiverHandle &getHandle() { return handle; }

    /// Stops the capture if it runs, waits for its end, and lets the handle's start only warn from now on.
    void endRun();

private:
    threading::Controller controller;
    NetworkReceiverHandle handle;
    bool runEnded = false;
};

} // namespace engine::streaming
