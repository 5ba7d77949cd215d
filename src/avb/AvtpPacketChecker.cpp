#include "avb/AvtpPacketChecker.h"

#include <cstdlib>
#include <utility>

#include "core/logging/Log.h"

namespace avb {

AvtpPacketChecker::AvtpPacketChecker(const std::string &sourceMac, std::uint32_t maximumChannelAmount, QObject *parent,
                                     std::shared_ptr<facts::StreamFacts> facts)
    : AvtpPacketBoundaryChecker(sourceMac, maximumChannelAmount, parent, std::move(facts)) {
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
    if (!headerComplete) {
        streamFacts().refused(sonvex::FrameRefusal::IncompleteHeader);
    }
    const bool numbered = frame.holds(AvtpFrame::sequenceNumberOffset, 1);
    if (firstPacket) {
        firstPacket = false;
        lastSequenceNumber = newestHeard = received;
        return headerComplete;
    }
    if (!headerComplete) {
        newestHeard = numbered ? received : newestHeard;
        return false;
    }
    const auto expected = static_cast<std::uint8_t>(lastSequenceNumber + 1);
    lastSequenceNumber = received;
    if (received == expected) {
        newestHeard = received;
        return true;
    }
    countGap(received);
    logging::debug("avb::AvtpPacketChecker::isSequenceNrInOrder", sourceMacText, "Sequence Order number out of range! ",
                   " Expected: ", expected, " Received: ", received);
    return false;
}

void AvtpPacketChecker::countGap(std::uint8_t received) {
    const auto skipped = static_cast<std::uint8_t>(received - newestHeard - 1);
    if (facts::StreamFacts::isLate(skipped)) {
        streamFacts().gappedByLateFrame();
    } else {
        streamFacts().gapped(skipped);
        newestHeard = received;
    }
}

bool AvtpPacketChecker::readDeclaredFields(const AvtpFrame &frame) {
    const int format = frame.holds(AvtpFrame::formatOffset, 1) ? frame.byteAt(AvtpFrame::formatOffset) : -1;
    if (!frame.holds(AvtpFrame::channelAmountOffset, 1)) {
        streamFacts().declared(format, -1, -1);
        setAmountOfDeliveredAvtpPacketChannels(-1);
        return false;
    }
    const int channelAmount = frame.byteAt(AvtpFrame::channelAmountOffset);
    const bool headerComplete = frame.holds(AvtpFrame::dataLengthOffset, 2);
    const int dataLength = headerComplete ? frame.dataLength() : -1;
    streamFacts().declared(format, channelAmount, dataLength);
    setAmountOfDeliveredAvtpPacketChannels(channelAmount);
    setLengthOfDeliveredAvtpPacketData(dataLength);
    return headerComplete;
}

} // namespace avb
