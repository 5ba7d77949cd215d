#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include <QObject>

#include <sonvex/SampleFormat.h>

#include "core/facts/StreamFacts.h"
#include "core/messages/BaseMessage.h"

namespace avb {

/**
 * Keeps what the newest frame of a stream declares about itself and compares it with the stream's limits, and with its
 * format if one is expected.
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

    /// Frames have to declare this format, and this rate in Hz or none. Before the first frame.
    void expectFormat(sonvex::SampleFormat format, unsigned int sampleRate);
    bool expectsFormat() const { return expectedFormat.has_value(); }

    /// The delivered amount of channels if it lies in 1 to @p maximum, else 0 with a warning.
    std::int32_t checkChannelAmount(std::int32_t maximum) const;
    /// Whether the delivered format and rate are the expected ones. Warns of each change to others.
    bool checkFormat() {
        const bool isExpected = deliveredFormat.code == expectedFormat->code &&
                                (deliveredFormat.rateCode == expectedFormat->rateCode || deliveredFormat.rateCode == 0);
        if (!isExpected) {
            refuseFormat();
        } else {
            refusedFormat.reset();
        }
        return isExpected;
    }
    /// Whether the delivered data length is @p expectedLength bytes.
    bool checkDataLength(std::uint64_t expectedLength) const {
        return deliveredDataLength >= 0 && static_cast<std::uint64_t>(deliveredDataLength) == expectedLength;
    }
    /// Announces the amount if it changed; -1 stands for a frame too short to hold one.
    void setAmountOfDeliveredAvtpPacketChannels(std::int32_t amount);
    void setLengthOfDeliveredAvtpPacketData(std::int32_t length);
    /// @param format code of IEEE 1722, @param rate the byte whose upper half is the code of the sample rate
    void setFormatOfDeliveredAvtpPacket(std::uint8_t format, std::uint8_t rate);
    std::int32_t getLengthOfDeliveredAvtpPacketData() const { return deliveredDataLength; }
    facts::StreamFacts &streamFacts() const { return *facts; }

Q_SIGNALS:
    /// A ChannelAmountChanged, emitted on a capture thread: connect queued.
    void message(std::shared_ptr<sonvex::BaseMessage> message);

private:
    struct Format {
        std::uint8_t code = 0;
        std::uint8_t rateCode = 0;
        bool operator!=(const Format &other) const { return code != other.code || rateCode != other.rateCode; }
    };

    void refuseFormat();

    std::shared_ptr<facts::StreamFacts> facts;
    std::string streamingDeviceMac;
    std::uint32_t maximumChannelAmount;
    std::int32_t deliveredChannelAmount = -1;
    std::int32_t previousChannelAmount = 0;
    std::int32_t deliveredDataLength = -1;
    std::optional<Format> expectedFormat;
    unsigned int expectedSampleRate = 0; ///< in Hz
    Format deliveredFormat;
    std::optional<Format> refusedFormat; ///< until a frame has the expected one
};

} // namespace avb
