#include "avb/AvtpPacketChecker.h"

#include <cstdlib>

#include "core/logging/Log.h"

namespace avb {

AvtpPacketChecker::AvtpPacketChecker(const std::string &sourceMac, std::uint32_t maximumChannelAmount, QObject *parent)
    : AvtpPacketBoundaryChecker(sourceMac, maximumChannelAmount, parent) {
    setSourceMacAddress(sourceMac);
    logging::debug("avb::AvtpPacketChecker::AvtpPacketChecker", sourceMacText, "Initialized");
}

AvtpPacketChecker::~AvtpPacketChecker() {
    logging::debug("avb::AvtpPacketChecker::~AvtpPacketChecker", sourceMacText, "CLEARED!");
}

void AvtpPacketChecker::setSourceMacAddress(const std::string &text) {
    static constexpr char context[] = "avb::AvtpPacketChecker::setSourceMacAddress";
    if (text.size() != 2 * sourceMac.size()) {
        sourceMacText = "000000000000";
        logging::warning(context, sourceMacText, "The given source MAC address length is invalid! ",
                         "Method isPacketConform() will always return false!");
        return;
    }
    sourceMacText = text;
    for (std::size_t i = 0; i < sourceMac.size(); ++i) {
        sourceMac[i] = static_cast<std::uint8_t>(std::strtol(text.substr(2 * i, 2).c_str(), nullptr, 16));
    }
    logging::debug(context, sourceMacText, "MAC address successfully set: ", text);
}

bool AvtpPacketChecker::isPacketConform(const AvtpFrame &frame) const {
    return frame.isFrom(sourceMac);
}

bool AvtpPacketChecker::isSequenceNrInOrder(const AvtpFrame &frame) {
    const bool headerComplete = readDeclaredFields(frame);
    const std::uint8_t received = frame.byteAt(AvtpFrame::sequenceNumberOffset);
    if (firstPacket) {
        firstPacket = false;
        lastSequenceNumber = received;
        return headerComplete;
    }
    if (!headerComplete) {
        return false;
    }
    const auto expected = static_cast<std::uint8_t>(lastSequenceNumber + 1);
    lastSequenceNumber = received;
    if (received == expected) {
        return true;
    }
    logging::debug("avb::AvtpPacketChecker::isSequenceNrInOrder", sourceMacText, "Sequence Order number out of range! ",
                   " Expected: ", expected, " Received: ", received);
    return false;
}

bool AvtpPacketChecker::readDeclaredFields(const AvtpFrame &frame) {
    if (!frame.holds(AvtpFrame::channelAmountOffset, 1)) {
        setAmountOfDeliveredAvtpPacketChannels(-1);
        return false;
    }
    setAmountOfDeliveredAvtpPacketChannels(frame.byteAt(AvtpFrame::channelAmountOffset));
    const bool headerComplete = frame.holds(AvtpFrame::dataLengthOffset, 2);
    setLengthOfDeliveredAvtpPacketData(headerComplete ? frame.dataLength() : -1);
    return headerComplete;
}

} // namespace avb
