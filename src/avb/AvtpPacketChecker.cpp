#include "avb/AvtpPacketChecker.h"

#include <array>
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

AvtpPacketChecker::AvtpPacketChecker(const sonvex::StreamId &streamId, std::uint32_t maximumChannelAmount,
                                     QObject *parent, std::shared_ptr<facts::StreamFacts> facts)
    : AvtpPacketBoundaryChecker(streamId.toString(), maximumChannelAmount, parent, std::move(facts)),
      sourceMacText(streamId.toString()), identity(AvtpFrame::identityOf<8>(streamId.getBytes().data())),
      toldByStreamId(true) {
    logging::debug("avb::AvtpPacketChecker::AvtpPacketChecker", sourceMacText, "Initialized");
}

AvtpPacketChecker::~AvtpPacketChecker() {
    logging::debug("avb::AvtpPacketChecker::~AvtpPacketChecker", sourceMacText, "CLEARED!");
}

void AvtpPacketChecker::setSourceMacAddress(const std::string &text) {
    static constexpr char context[] = "avb::AvtpPacketChecker::setSourceMacAddress";
    std::array<std::uint8_t, 6> address{};
    if (text.size() != 2 * address.size()) {
        sourceMacText = "000000000000";
        logging::warning(context, sourceMacText, "The given source MAC address length is invalid! ",
                         "Method isPacketConform() will always return false!");
        return;
    }
    sourceMacText = text;
    for (std::size_t i = 0; i < address.size(); ++i) {
        address[i] = static_cast<std::uint8_t>(std::strtol(text.substr(2 * i, 2).c_str(), nullptr, 16));
    }
    identity = AvtpFrame::identityOf<6>(address.data());
    logging::debug(context, sourceMacText, "MAC address successfully set: ", text);
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
    const bool headerComplete = frame.holds(AvtpFrame::dataLengthOffset, 2);
    if (headerComplete && latestDeclaration == frame.declaration()) {
        return true; // as nearly always: everything has been said and kept
    }
    latestDeclaration = headerComplete ? std::optional(frame.declaration()) : std::nullopt;
    const auto field = [&frame](AvtpFrame::Offset offset) {
        return frame.holds(offset, 1) ? int{frame.byteAt(offset)} : -1;
    };
    const int format = field(AvtpFrame::formatOffset);
    const int rate = field(AvtpFrame::sampleRateOffset);
    int channelAmount = field(AvtpFrame::channelAmountOffset);
    if (channelAmount >= 0 && expectsFormat()) {
        channelAmount |= (rate & 0x3) << 8;
        setFormatOfDeliveredAvtpPacket(static_cast<std::uint8_t>(format), static_cast<std::uint8_t>(rate));
    }
    const int dataLength = headerComplete ? frame.dataLength() : -1;
    streamFacts().declared(format, rate < 0 ? -1 : rate >> 4, channelAmount, field(AvtpFrame::bitDepthOffset),
                           dataLength);
    setAmountOfDeliveredAvtpPacketChannels(channelAmount);
    if (channelAmount >= 0) {
        setLengthOfDeliveredAvtpPacketData(dataLength);
    }
    return headerComplete;
}

} // namespace avb
