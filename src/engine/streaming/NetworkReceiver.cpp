#include "engine/streaming/NetworkReceiver.h"

#include "core/logging/Log.h"

namespace engine::streaming {

namespace {

constexpr int snapLength = 65536;
constexpr int promiscuous = 1;
constexpr int readTimeoutMilliseconds = 1;
constexpr int optimiseFilter = 1;
constexpr std::uint32_t unknownNetmask = 0xFFFFFFFF;

} // namespace

NetworkReceiver::NetworkReceiver(const pcapplus::PcapDeviceInfo &deviceInfo, std::uint8_t avtpSubtype,
                                 std::string filterExpression)
    : AvtpPacketReceiver(avtpSubtype, nullptr),
      PcapPacketSniffer(deviceInfo, snapLength, promiscuous, readTimeoutMilliseconds, nullptr),
      controller(this, threading::WorkerOwnership::Holder),
      handle(
          deviceInfo.getSystemDeviceName(), [this] { return isRunning(); }, nullptr) {
    if (!filterExpression.empty()) {
        setFilter(filterExpression, optimiseFilter, unknownNetmask);
    }
    registerPacketReceiver(*this);
    const auto isMine = [this](const std::string &uid) { return uid == getDeviceInfoCopy().getSystemDeviceName(); };
    QObject::connect(
        &handle, qOverload<std::string>(&NetworkReceiverHandle::start), &handle,
        [this, isMine](const std::string &uid) {
            if (!isMine(uid)) {
                return;
            }
            if (runEnded) {
                logging::warning("engine::streaming::NetworkReceiver::start", uid,
                                 "The run was ended by ISonvex::destroy, the capture cannot be started!");
                return;
            }
            PcapPacketSniffer::start();
        },
        Qt::DirectConnection);
    QObject::connect(
        &handle, qOverload<std::string>(&NetworkReceiverHandle::stop), &handle,
        [this, isMine](const std::string &uid) {
            if (isMine(uid)) {
                PcapPacketSniffer::stop();
            }
        },
        Qt::DirectConnection);
}

NetworkReceiver::~NetworkReceiver() {
    // No frame may meet a receiver whose parts are going.
    pcapplus::PacketHandlerSlot::instance().set(pcapplus::dummyPacketHandler);
}

std::string NetworkReceiver::toString() const {
    return "NetworkReceiver: " + getName() + handle.toString() + PcapPacketSniffer::toString() +
           AvtpPacketReceiver::toString();
}

void NetworkReceiver::endRun() {
    if (isRunning()) {
        PcapPacketSniffer::stop();
    }
    waitForCaptureEnd();
    runEnded = true;
}

} // namespace engine::streaming
