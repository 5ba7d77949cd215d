#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace common {

/// Names a stream on the wire: most talkers take their address and two bytes that count their streams.
using StreamId = std::array<std::uint8_t, 8>;

/// @param text 16 hexadecimal digits in pairs, with ':' or '-' between any two bytes or none
/// @param what is it for, as the refusal names it
/// @throws common::Refusal for any other text
StreamId parseStreamId(const std::string &text, const std::string &what);

/// 16 lower-case digits.
std::string toString(const StreamId &id);

} // namespace common
