#include "InventedFrame.h"

#include <algorithm>
#include <array>

#include <sanitizer/asan_interface.h>

#include "Streams.h"

namespace fuzz {

namespace {

constexpr std::uint32_t headerLength = 38;
constexpr std::uint32_t maximumLength = 1024; // more than the longest good frame
constexpr std::size_t guard = 64;

class Memory {
public:
    Memory() {
        std::uint32_t state = 1;
        for (std::uint8_t &value : noise) {
            state = state * 1664525 + 1013904223;
            value = static_cast<std::uint8_t>(state >> 24);
        }
        ASAN_POISON_MEMORY_REGION(block.data(), block.size());
    }

    /// Memory for a frame: a header of zeros, then noise, from @p start on.
    std::uint8_t *open(std::uint8_t start) {
        std::uint8_t *frame = block.data() + guard;
        ASAN_UNPOISON_MEMORY_REGION(frame, maximumLength);
        std::fill_n(frame, headerLength, std::uint8_t{0});
        std::copy_n(noise.data() + start, maximumLength - headerLength, frame + headerLength);
        return frame;
    }

    void close(std::uint32_t length) {
        ASAN_POISON_MEMORY_REGION(block.data() + guard + length, maximumLength + guard - length);
    }

private:
    alignas(16) std::array<std::uint8_t, guard + maximumLength + guard> block;
    std::array<std::uint8_t, maximumLength + 256> noise;
};
Memory memory;

} // namespace

InventedFrame::InventedFrame(Input &input, const StreamLayout &layout, std::uint8_t sequence)
    : CapturedFrame{}, layout(layout), frame(memory.open(input.byte())) {
    bytes = frame;
    std::copy(layout.address.begin(), layout.address.end(), frame + 6);
    frame[14] = subtype;
    frame[16] = sequence;
    declareChannels(layout.channels - input.byte() % layout.channels);
    for (unsigned flaws = input.byte() % 4; flaws > 0; --flaws) {
        addFlaw(input);
    }
    capturedLength = std::min(capturedLength, maximumLength);
    wireLength += capturedLength;
    memory.close(capturedLength);
}

void InventedFrame::addFlaw(Input &input) {
    const int kind = input.byte() % 13;
    const std::uint8_t value = input.byte();
    const auto offset = static_cast<std::uint32_t>(static_cast<std::int8_t>(value));
    switch (kind) {
    case 0: // out of order
        frame[16] = static_cast<std::uint8_t>(frame[16] + value);
        break;
    case 1: // another amount of channels
        frame[32] = value;
        break;
    case 2: // the same, with the length that goes with it
        declareChannels(value);
        break;
    case 3: // any length
        declareLength(static_cast<std::uint32_t>(value << 8 | input.byte()));
        break;
    case 4: // a length nearby
        declareLength(static_cast<std::uint32_t>(frame[34] << 8 | frame[35]) + offset);
        break;
    case 5: // cut, most often in the header
        capturedLength = value;
        break;
    case 6: // cut or padded by a little
        capturedLength += offset;
        break;
    case 7: // the length on the wire is near what was captured
        wireLength = offset;
        break;
    case 8: // or anything
        wireLength = std::uint32_t{value} << 24 | input.word();
        break;
    case 9: // from elsewhere, perhaps from another stream
        frame[6 + value % 6] = static_cast<std::uint8_t>(frame[6 + value % 6] ^ input.byte());
        break;
    case 10: // any byte is another one
        frame[value % maximumLength] = input.byte();
        break;
    case 11: // no part of the header is as it should be
        std::generate_n(frame, headerLength, [&input] { return input.byte(); });
        break;
    case 12:
        bytes = nullptr;
        break;
    }
}

void InventedFrame::declareChannels(std::uint32_t channels) {
    const std::uint32_t length = channels * layout.samplesPerChannel * layout.sampleSize; // wraps as the field does
    frame[32] = static_cast<std::uint8_t>(channels);
    declareLength(length);
    capturedLength = headerLength + (length & 0xFFFF);
}

void InventedFrame::declareLength(std::uint32_t length) {
    frame[34] = static_cast<std::uint8_t>(length >> 8);
    frame[35] = static_cast<std::uint8_t>(length);
}

} // namespace fuzz
