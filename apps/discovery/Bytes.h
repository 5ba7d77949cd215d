#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace discovery {

/// Captured bytes, and the only way to read them: what lies behind their end reads as 0, whatever a frame claims.
/// Valid as long as the capture's memory.
class Bytes {
public:
    Bytes() = default;
    /// @param first may be null, for no bytes
    Bytes(const std::uint8_t *first, std::size_t size) : bytes(first), amount(first == nullptr ? 0 : size) {}

    std::size_t size() const { return amount; }

    /// Big-endian, of @p width bytes, 8 at most.
    std::uint64_t number(std::size_t offset, std::size_t width) const {
        std::uint64_t value = 0;
        for (std::size_t i = offset; i < offset + width; ++i) {
            value = value << 8U | (i < amount ? bytes[i] : 0U);
        }
        return value;
    }
    std::uint8_t byte(std::size_t offset) const { return static_cast<std::uint8_t>(number(offset, 1)); }
    std::uint16_t word(std::size_t offset) const { return static_cast<std::uint16_t>(number(offset, 2)); }

    template <std::size_t size>
    std::array<std::uint8_t, size> array(std::size_t offset) const {
        std::array<std::uint8_t, size> values{};
        for (std::size_t i = 0; i < size; ++i) {
            values[i] = byte(offset + i);
        }
        return values;
    }

    Bytes from(std::size_t offset) const { return offset < amount ? Bytes(bytes + offset, amount - offset) : Bytes(); }
    Bytes first(std::size_t size) const { return {bytes, std::min(size, amount)}; }

private:
    const std::uint8_t *bytes = nullptr;
    std::size_t amount = 0;
};

} // namespace discovery
