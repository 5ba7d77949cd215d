#include "engine/streaming/NetworkReceiver.h"

#include <utility>

namespace engine::streaming {

namespace {

constexpr int snapLength = 65536;
constexpr int promiscuous = 1;
constexpr int readTimeoutMilliseconds = 1;
constexpr int optimiseFilter = 1;
constexpr std::uint32_t unknownNetmask = 0xFFFFFFFF;

} // namespace

NetworkReceiver::NetworkReceiver(const pcapplus::PcapDeviceInfo &deviceInfo, std::uint8_t avtpSubtype,
                                 std::string filterExpression, std::shared_ptr<const Run> run,
                                 std::shared_ptr<facts::AdapterFacts> facts)
    : AvtpPacketReceiver(avtpSubtype, nullptr),
      PcapPacketSniffer(deviceInfo, snapLength, promiscuous, readTimeoutMilliseconds, nullptr, std::move(facts)),
      controller(static_cast<threading::Worker &>(*this)),
      handle(std::make_unique<NetworkReceiverHandle>(
          deviceInfo.getSystemDeviceName(), [this] { return isRunning(); }, std::move(run), nullptr)) {
    if (!filterExpression.empty()) {
        requireFilter(filterExpression, optimiseFilter, unknownNetmask);
    }
    registerPacketReceiver(*this);
    // With the controller as their context, the connections end with this object; the handle may stay.
    const auto connectToSniffer = [this](auto signal, auto operation) {
        QObject::connect(
            handle.get(), signal, &controller,
            [this, operation](const std::string &uid) {
                if (uid == getDeviceInfoCopy().getSystemDeviceName()) {
                    operation(static_cast<PcapPacketSniffer &>(*this));
                }
            },
            Qt::DirectConnection);
    };
    connectToSniffer(qOverload<std::string>(&NetworkReceiverHandle::start), [](auto &sniffer) { sniffer.start(); });
    connectToSniffer(qOverload<std::string>(&NetworkReceiverHandle::stop), [](auto &sniffer) { sniffer.stop(); });
}

NetworkReceiver::~NetworkReceiver() {
    // No frame may meet a receiver whose parts are going.
    pcapplus::PacketHandlerSlot::instance().set(pcapplus::dummyPacketHandler);
}

std::string NetworkReceiver::toString() const {
    return "NetworkReceiver: " + getName() + handle->toString() + PcapPacketSniffer::toString() +
           AvtpPacketReceiver::toString();
}

void NetworkReceiver::settle() {
    controller.settle();
}

void NetworkReceiver::retire() {
    release();
    AvtpPacketReceiver::retire();
}

} // namespace engine::streaming
