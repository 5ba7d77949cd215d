#include "avb/AvtpPacketBoundaryChecker.h"

#include <utility>

#include "core/logging/Log.h"
#include "core/messages/ChannelAmountChanged.h"
#include "core/messages/MessageTexts.h"

namespace avb {

AvtpPacketBoundaryChecker::AvtpPacketBoundaryChecker(const std::string &streamingDeviceMac,
                                                     std::uint32_t maximumChannelAmount, QObject *parent,
                                                     std::shared_ptr<facts::StreamFacts> facts)
    : QObject(parent), facts(std::move(facts)), streamingDeviceMac(streamingDeviceMac),
      maximumChannelAmount(maximumChannelAmount) {
    logging::debug("avb::AvtpPacketBoundaryChecker::AvtpPacketBoundaryChecker", streamingDeviceMac, "Initialized");
}

AvtpPacketBoundaryChecker::~AvtpPacketBoundaryChecker() {
    logging::debug("avb::AvtpPacketBoundaryChecker::~AvtpPacketBoundaryChecker", streamingDeviceMac, "CLEARED!");
}

std::int32_t AvtpPacketBoundaryChecker::checkChannelAmount(std::int32_t maximum) const {
    if (deliveredChannelAmount >= 1 && deliveredChannelAmount <= maximum) {
        return deliveredChannelAmount;
    }
    facts->refused(sonvex::FrameRefusal::ChannelAmount);
    logging::warning("avb::AvtpPacketBoundaryChecker::checkChannelAmount", streamingDeviceMac,
                     "The amount of AVTP packet channels is invalid or exceeded: ", "Maximum allowed channel amount: ",
                     maximum, ", AVTP packet amount: ", deliveredChannelAmount);
    return 0;
}

bool AvtpPacketBoundaryChecker::checkDataLength(std::uint64_t expectedLength) const {
    return deliveredDataLength >= 0 && static_cast<std::uint64_t>(deliveredDataLength) == expectedLength;
}

void AvtpPacketBoundaryChecker::setAmountOfDeliveredAvtpPacketChannels(std::int32_t amount) {
    if (amount == deliveredChannelAmount) {
        return;
    }
    previousChannelAmount = deliveredChannelAmount;
    deliveredChannelAmount = amount;
    Q_EMIT message(std::make_shared<sonvex::ChannelAmountChanged>(streamingDeviceMac, sonvex::messagetexts::information,
                                                                  "AvtpPacketBoundaryChecker", maximumChannelAmount,
                                                                  previousChannelAmount, deliveredChannelAmount));
    logging::debug("avb::AvtpPacketBoundaryChecker::setAmountOfDeliveredAvtpPacketChannels", streamingDeviceMac,
                   "The amount of the currently transferred AVTP packet channels ",
                   "have been  changed. New channel number: ", deliveredChannelAmount,
                   ", before: ", previousChannelAmount);
}

void AvtpPacketBoundaryChecker::setLengthOfDeliveredAvtpPacketData(std::int32_t length) {
    deliveredDataLength = length;
}

} // namespace avb
