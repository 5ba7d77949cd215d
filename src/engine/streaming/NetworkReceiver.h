#pragma once

#include <memory>

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
    /// Opens the adapter; isConfigured() tells whether that worked, isThreadRunning() whether the worker has its
    /// thread. An empty filter expression sets no filter.
    NetworkReceiver(const pcapplus::PcapDeviceInfo &deviceInfo, std::uint8_t avtpSubtype, std::string filterExpression,
                    std::shared_ptr<const Run> run,
                    std::shared_ptr<facts::AdapterFacts> facts = std::make_shared<facts::AdapterFacts>());
    ~NetworkReceiver() override;

    std::string toString() const override;

    NetworkReceiverHandle &getHandle() { return *handle; }
    bool isThreadRunning() const { return controller.isThreadRunning(); }

    /// Returns once nothing is queued here. No capture may go on, as each reaches every receiver.
    void settle();
    /// For the end of the run: no capture is left, the adapter is closed, and no configuration is read any more.
    void retire();
    /// Hands the handle over, which a host may keep for longer than there is a receiver.
    std::unique_ptr<NetworkReceiverHandle> takeHandle() { return std::move(handle); }

private:
    threading::Controller controller;
    std::unique_ptr<NetworkReceiverHandle> handle;
};

} // namespace engine::streaming
