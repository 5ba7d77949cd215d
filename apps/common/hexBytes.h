#pragma once

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace common {

/// The bytes that pairs of hexadecimal digits say, with ':', '-' or '.' between any two bytes or none; nothing for any
/// other text.
template <std::size_t size>
std::optional<std::array<std::uint8_t, size>> parseHexBytes(std::string_view text) {
    std::array<std::uint8_t, size> bytes{};
    for (std::size_t i = 0; i < size; ++i) {
        if (i > 0 && !text.empty() && (text[0] == ':' || text[0] == '-' || text[0] == '.')) {
            text.remove_prefix(1);
        }
        const std::string_view pair = text.substr(0, 2);
        const char *const end = pair.data() + pair.size();
        if (pair.size() < 2 || std::from_chars(pair.data(), end, bytes[i], 16).ptr != end) {
            return std::nullopt;
        }
        text.remove_prefix(2);
    }
    return text.empty() ? std::optional(bytes) : std::nullopt;
}

/// Lower case, without separators.
template <std::size_t size>
std::string hexText(const std::array<std::uint8_t, size> &bytes) {
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (const unsigned byte : bytes) {
        text += digits[byte / 16];
        text += digits[byte % 16];
    }
    return text;
}

} // namespace common
