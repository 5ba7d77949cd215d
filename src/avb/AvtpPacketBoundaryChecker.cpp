#include "avb/AvtpPacketBoundaryChecker.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "core/data/AafCodes.h"
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

void AvtpPacketBoundaryChecker::expectFormat(sonvex::SampleFormat format, unsigned int sampleRate) {
    constexpr std::uint8_t noNominalRate = 0xFF;
    const auto *const rate =
        std::find(std::begin(sonvex::aaf::sampleRates), std::end(sonvex::aaf::sampleRates), sampleRate);
    const auto rateCode = rate == std::end(sonvex::aaf::sampleRates)
                              ? noNominalRate
                              : static_cast<std::uint8_t>(rate - std::begin(sonvex::aaf::sampleRates));
    expectedFormat = Format{sonvex::aaf::codeOf(format), rateCode};
    expectedSampleRate = sampleRate;
}

void AvtpPacketBoundaryChecker::refuseFormat() {
    const bool otherFormat = deliveredFormat.code != expectedFormat->code;
    facts->refused(otherFormat ? sonvex::FrameRefusal::Format : sonvex::FrameRefusal::SampleRate);
    if (refusedFormat && !(*refusedFormat != deliveredFormat)) {
        return;
    }
    refusedFormat = deliveredFormat;
    static constexpr char context[] = "avb::AvtpPacketBoundaryChecker::checkFormat";
    if (otherFormat) {
        logging::warning(context, streamingDeviceMac, "The AVTP packets have another sample format! ",
                         "Expected format code: ", expectedFormat->code,
                         ", AVTP packet format code: ", deliveredFormat.code);
    } else {
        logging::warning(context, streamingDeviceMac, "The AVTP packets have another sample rate! ",
                         "Expected sample rate: ", expectedSampleRate,
                         ", AVTP packet sample rate: ", sonvex::aaf::sampleRateOf(deliveredFormat.rateCode), " (code ",
                         deliveredFormat.rateCode, ")");
    }
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

void AvtpPacketBoundaryChecker::setFormatOfDeliveredAvtpPacket(std::uint8_t format, std::uint8_t rate) {
    deliveredFormat = {format, static_cast<std::uint8_t>(rate >> 4)};
}

} // namespace avb
