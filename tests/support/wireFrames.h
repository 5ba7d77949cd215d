#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <vector>

/// Frames as they are on the wire, from the fields of the standards.
namespace wire {

using Frame = std::vector<std::uint8_t>;

inline void append(Frame &frame, std::uint64_t value, unsigned width) {
    for (unsigned i = width; i-- > 0;) {
        frame.push_back(static_cast<std::uint8_t>(value >> 8 * i));
    }
}

/// @param tags each with its EtherType, as 0x81006002
inline Frame ethernet(std::uint64_t source, std::uint16_t etherType, const Frame &payload,
                      std::initializer_list<std::uint32_t> tags = {}) {
    Frame frame;
    append(frame, etherType == 0x22ea ? 0x0180c200000e : 0x91e0f000fe00, 6);
    append(frame, source, 6);
    for (const std::uint32_t tag : tags) {
        append(frame, tag, 4);
    }
    append(frame, etherType, 2);
    frame.insert(frame.end(), payload.begin(), payload.end());
    return frame;
}

/// The fields of an audio stream's frame; IEC 61883-6 if it has a @p blockSize.
struct Audio {
    std::uint64_t id = 0x0200000000010000;
    unsigned format = 4;
    unsigned rate = 5;
    unsigned channels = 2;
    unsigned depth = 16;
    unsigned length = 24; ///< declared
    unsigned sequence = 0;
    unsigned flags = 0x81; ///< stream ID and time stamp are valid
    std::uint64_t timestamp = 0;
    bool sparse = false;
    bool uncertain = false;

    Frame payload() const {
        return header(0x02, format << 24U | rate << 20U | channels << 8U | depth, sparse ? 16U : 0U);
    }
    /// Channels are those of the packet header, the rate is its code.
    Frame iec61883() const {
        Frame frame = header(0x00, 0, 0x40);
        frame.resize(24);
        append(frame, channels << 16U, 4);
        append(frame, 0x90U << 24U | rate << 16U | 0xffffU, 4);
        frame.resize(24 + length);
        return frame;
    }

private:
    Frame header(unsigned subtype, std::uint64_t description, unsigned behindLength) const {
        Frame frame;
        append(frame, subtype << 24U | flags << 16U | sequence % 256 << 8U | (uncertain ? 1U : 0U), 4);
        append(frame, id, 8);
        append(frame, timestamp, 4);
        append(frame, description, 4);
        append(frame, length, 2);
        append(frame, behindLength << 8U, 2);
        frame.resize(24 + length);
        return frame;
    }
};

/// A clock reference at 48 kHz of one time stamp each 96 samples.
inline Frame clockReference(std::uint64_t id, unsigned sequence, std::uint64_t time, unsigned pull = 0) {
    Frame frame;
    append(frame, 0x04800001U | sequence % 256 << 8U, 4);
    append(frame, id, 8);
    append(frame, pull << 29U | 48000U, 4);
    append(frame, 8U << 16U | 96U, 4);
    append(frame, time, 8);
    return frame;
}

/// One vector of a talker's attributes, with all of its message; failed if it has a @p failure.
struct Talker {
    std::uint64_t id;
    std::uint64_t destination;
    unsigned amount;
    std::vector<std::uint8_t> events; ///< three packed in each
    unsigned failure = 0;
    unsigned leaveAll = 0;

    Frame message() const {
        const unsigned valueSize = failure > 0 ? 34 : 25;
        Frame frame;
        append(frame, failure > 0 ? 2 : 1, 1);
        append(frame, valueSize, 1);
        append(frame, 2 + valueSize + events.size() + 2, 2);
        append(frame, leaveAll << 13U | amount, 2);
        append(frame, id, 8);
        append(frame, destination, 6);
        append(frame, 2, 2);      // VLAN
        append(frame, 224, 2);    // bytes
        append(frame, 1, 2);      // frame an interval
        append(frame, 0x70, 1);   // priority 3, rank 1
        append(frame, 125000, 4); // latency
        if (failure > 0) {
            append(frame, 0x8000001122334455, 8);
            append(frame, failure, 1);
        }
        frame.insert(frame.end(), events.begin(), events.end());
        append(frame, 0, 2);
        return frame;
    }
};

/// A listener's attribute, which no talker's reader wants.
inline Frame listenerMessage() {
    return {3, 8, 0, 14, 0, 1, 2, 0, 0, 0, 0, 1, 0, 0, 36, 128, 0, 0};
}

inline Frame reservations(std::initializer_list<Frame> messages) {
    Frame frame{0};
    for (const Frame &message : messages) {
        frame.insert(frame.end(), message.begin(), message.end());
    }
    append(frame, 0, 2);
    return frame;
}

} // namespace wire
