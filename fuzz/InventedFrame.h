#pragma once

#include <cstddef>
#include <cstdint>

namespace fuzz {

struct StreamLayout;

/// The fuzzer's bytes, from the front. Zeros follow the last one.
class Input {
public:
    Input(const std::uint8_t *bytes, std::size_t size) : bytes(bytes), size(size) {}

    bool isEmpty() const { return size == 0; }
    std::uint8_t byte() { return size == 0 ? std::uint8_t{0} : (--size, *bytes++); }
    std::uint16_t word() {
        const std::uint8_t high = byte();
        return static_cast<std::uint16_t>(high << 8 | byte());
    }

private:
    const std::uint8_t *bytes;
    std::size_t size;
};

struct CapturedFrame {
    const std::uint8_t *bytes; ///< null for some
    std::uint32_t capturedLength;
    std::uint32_t wireLength;
};

/**
 * A good frame of a stream, with up to three flaws: from an input of zeros a flawless one, so that many inputs reach
 * the samples. There is one frame at a time, in memory that is poisoned before it and behind its captured bytes.
 *
 * The corpus rests on the meaning of each byte and on the table of the streams: who changes them makes a new one.
 */
class InventedFrame : public CapturedFrame {
public:
    /// @param sequence the number that is in order
    InventedFrame(Input &input, const StreamLayout &layout, std::uint8_t sequence);

private:
    void addFlaw(Input &input);
    void declareChannels(std::uint32_t channels);
    void declareLength(std::uint32_t length);

    const StreamLayout &layout;
    std::uint8_t *const frame;
};

} // namespace fuzz
