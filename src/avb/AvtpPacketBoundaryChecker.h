#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <QObject>

#include "core/facts/StreamFacts.h"
#include "core/messages/BaseMessage.h"

namespace avb {

/**
 * Keeps what the newest frame of a stream declares about itself and compares it with the stream's limits.
 * Built on the host's thread; everything else runs on capture threads, one at a time.
 */
class AvtpPacketBoundaryChecker : public QObject {
    Q_OBJECT

public:
    /// @param facts not null; the stream's
    AvtpPacketBoundaryChecker(const std::string &streamingDeviceMac, std::uint32_t maximumChannelAmount,
                              QObject *parent,
                              std::shared_ptr<facts::StreamFacts> facts = std::make_shared<facts::StreamFacts>());
    ~AvtpPacketBoundaryChecker() override;

    /// The delivered amount of channels if it lies in 1 to @p maximum, else 0 with a warning.
    std::int32_t checkChannelAmount(std::int32_t maximum) const;
    /// Whether the delivered data length is @p expectedLength bytes.
    bool checkDataLength(std::uint64_t expectedLength) const;
    /// Announces the amount if it changed; -1 stands for a frame too short to hold one.
    void setAmountOfDeliveredAvtpPacketChannels(std::int32_t amount);
    void setLengthOfDeliveredAvtpPacketData(std::int32_t length);
    facts::StreamFacts &streamFacts() const { return *facts; }

Q_SIGNALS:
    /// A ChannelAmountChanged, emitted on a capture thread: connect queued.
    void message(std::shared_ptr<sonvex::BaseMessage> message);

private:
    std::shared_ptr<facts::StreamFacts> facts;
    std::string streamingDeviceMac;
    std::uint32_t maximumChannelAmount;
    std::int32_t deliveredChannelAmount = -1;
    std::int32_t previousChannelAmount = 0;
    std::int32_t deliveredDataLength = -1;
};

} // namespace avb
