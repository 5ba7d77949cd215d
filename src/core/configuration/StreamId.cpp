#include <sonvex/StreamId.h>

#include <string_view>

#include <sonvex/exceptions.h>

#include "core/logging/Log.h"

namespace sonvex {

namespace {

constexpr std::string_view separators = ":-.";

/// -1 for what is no hexadecimal digit.
int digitOf(char character) {
    constexpr std::string_view digits = "0123456789abcdef0123456789ABCDEF";
    const auto position = digits.find(character);
    return position == std::string_view::npos ? -1 : static_cast<int>(position % 16);
}

/// False for a text that names no stream.
bool parse(std::string_view text, StreamId::Bytes &bytes) {
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i > 0 && !text.empty() && separators.find(text.front()) != std::string_view::npos) {
            text.remove_prefix(1);
        }
        if (text.size() < 2 || digitOf(text[0]) < 0 || digitOf(text[1]) < 0) {
            return false;
        }
        bytes[i] = static_cast<std::uint8_t>(digitOf(text[0]) * 16 + digitOf(text[1]));
        text.remove_prefix(2);
    }
    return text.empty();
}

} // namespace

StreamId::StreamId(const Bytes &bytes) : bytes(bytes) {}

StreamId::StreamId(const std::string &text) : bytes{} {
    if (!parse(text, bytes)) {
        logging::refuse<exceptions::InstanceNotCreateable>(
            "sonvex::StreamId::StreamId", "'" + text + "' is no stream ID: it takes 16 hexadecimal digits");
    }
}

StreamId::Bytes StreamId::getBytes() const {
    return bytes;
}

std::string StreamId::toString() const {
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (const unsigned byte : bytes) {
        text += digits[byte / 16];
        text += digits[byte % 16];
    }
    return text;
}

} // namespace sonvex
