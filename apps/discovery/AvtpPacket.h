#pragma once

#include <cstdint>
#include <optional>

#include "common/StreamId.h"
#include "discovery/Bytes.h"
#include "discovery/StreamFormat.h"

namespace discovery {

/// What one AVTP frame says of its stream.
struct AvtpPacket {
    enum class Content {
        stream,
        /// Discovery, control, connections and the allocation of addresses: of no stream.
        control,
        /// Of a version that is not known.
        otherVersion,
        incomplete
    };

    Content content = Content::incomplete;
    StreamFormat format;
    std::optional<common::StreamId> id; ///< none if the frame marks its own as not valid
    std::optional<std::uint8_t> sequence;
    bool restart = false; ///< turns over with each restart of the media clock
    bool uncertain = false;
    std::optional<std::uint32_t> timestamp; ///< if it is valid: ns, modulo 2^32, of the first sample or event
    std::optional<unsigned> dataLength;     ///< bytes, declared
    bool isWhole = true;                    ///< the frame is as long as the declared data want it
    /// Samples of each channel, or events of the clock; none if the data length leaves a rest or nothing is known.
    std::optional<unsigned> samples;

    /// @param payload of the Ethernet frame @param wireSize of the payload
    AvtpPacket(Bytes payload, std::size_t wireSize);

private:
    void readAaf(Bytes payload);
    void readIec61883(Bytes payload);
    void readClockReference(Bytes payload);
    void readDataLength(Bytes payload, std::size_t offset, std::size_t dataOffset, std::size_t wireSize);
};

} // namespace discovery
