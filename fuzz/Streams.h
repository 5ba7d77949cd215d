#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace fuzz {

struct StreamLayout {
    const char *mac;                     ///< the text that the stream is added under
    std::array<std::uint8_t, 6> address; ///< what that text stands for
    unsigned sampleSize, channels, samplesPerChannel;
    unsigned bufferSize, signalAmount; ///< the size is a multiple of the amount
};

constexpr std::uint8_t subtype = 2;

/// In the order of their texts, as the receiver goes through them.
constexpr std::array<StreamLayout, 17> streams{{
    {"02", {0, 0, 0, 0, 0, 0}, 2, 1, 1, 0, 0}, // no address
    {"020000000001", {2, 0, 0, 0, 0, 1}, 2, 1, 6, 48, 24},
    {"020000000002", {2, 0, 0, 0, 0, 2}, 2, 2, 1, 7, 7},
    {"020000000003", {2, 0, 0, 0, 0, 3}, 2, 8, 6, 15, 0},
    {"020000000004", {2, 0, 0, 0, 0, 4}, 2, 2, 48, 40, 20}, // a frame is more than a buffer holds
    {"020000000005", {2, 0, 0, 0, 0, 5}, 2, 1, 48, 48, 0},
    {"020000000006", {2, 0, 0, 0, 0, 6}, 1, 2, 6, 20, 0},
    {"020000000007", {2, 0, 0, 0, 0, 7}, 3, 2, 6, 20, 0},
    {"020000000008", {2, 0, 0, 0, 0, 8}, 4, 8, 1, 10, 0},
    {"020000000009", {2, 0, 0, 0, 0, 9}, 2, 2, 0, 10, 0},
    {"02000000000a", {2, 0, 0, 0, 0, 10}, 0, 2, 6, 10, 0},
    {"0200000000AA", {2, 0, 0, 0, 0, 0xAA}, 2, 2, 6, 30, 0},
    {"0200000000aa", {2, 0, 0, 0, 0, 0xAA}, 2, 1, 6, 30, 15}, // hears what the one before does not take
    {"0200000000f1", {2, 0, 0, 0, 0, 0xF1}, 2, 60, 6, 9, 0},
    {"0200000000f2", {2, 0, 0, 0, 0, 0xF2}, 2, 8, 48, 60, 0},
    {"0200000000f3", {2, 0, 0, 0, 0, 0xF3}, 2, 1, 0x80000000, 10, 0}, // 0 bytes in 32 bits
    {"0200000000f4", {2, 0, 0, 0, 0, 0xF4}, 2, 1, 32778, 10, 0},      // 20 bytes in 16 bits
}};

constexpr std::size_t streamWithSharedSource = 12;
constexpr std::size_t cheapStreams = 13; ///< the first ones; a new receiver takes long to learn of the others

} // namespace fuzz
