#pragma once

#include <cstdint>
#include <optional>

#include <sonvex/StreamId.h>

#include "avb/AvtpFrame.h"
#include "avb/AvtpPacketBoundaryChecker.h"

namespace avb {

/// Tells whether a frame belongs to one stream, by its source or by its stream ID, and whether it follows the frame
/// before it.
class AvtpPacketChecker : public AvtpPacketBoundaryChecker {
    Q_OBJECT

public:
    /// @param sourceMac 12 hexadecimal digits; another length warns, and leaves a checker that no real frame passes
    AvtpPacketChecker(const std::string &sourceMac, std::uint32_t maximumChannelAmount, QObject *parent,
                      std::shared_ptr<facts::StreamFacts> facts = std::make_shared<facts::StreamFacts>());
    AvtpPacketChecker(const sonvex::StreamId &streamId, std::uint32_t maximumChannelAmount, QObject *parent,
                      std::shared_ptr<facts::StreamFacts> facts = std::make_shared<facts::StreamFacts>());
    ~AvtpPacketChecker() override;

    /// Each pair of characters is read as strtol reads it with base 16, so what is no digit counts as 0.
    void setSourceMacAddress(const std::string &text);
    bool isPacketConform(const AvtpFrame &frame) const {
        return toldByStreamId ? frame.hasValidStreamId() && frame.streamId() == identity
                              : frame.holds(AvtpFrame::sourceMacOffset, 6) && frame.source() == identity;
    }
    /// What frames are told by: the source address or the stream ID, as AvtpFrame gives them.
    std::uint64_t getIdentity() const { return identity; }
    bool isToldByStreamId() const { return toldByStreamId; }
    /// Also takes the frame's declared channel amount and data length over, for the checks that follow.
    bool isSequenceNrInOrder(const AvtpFrame &frame);

private:
    bool readDeclaredFields(const AvtpFrame &frame);
    void countGap(std::uint8_t received);

    std::string sourceMacText;
    std::optional<std::uint64_t> latestDeclaration; ///< of a complete header; nothing has read another one since
    std::uint64_t identity = 0;
    bool toldByStreamId = false;
    bool firstPacket = true;
    std::uint8_t lastSequenceNumber = 0;
    std::uint8_t newestHeard = 0; ///< of all frames, also those that were cut; not of late ones
};

} // namespace avb
