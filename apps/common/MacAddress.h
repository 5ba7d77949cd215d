#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace common {

using MacAddress = std::array<std::uint8_t, 6>;

/// Reads six pairs of hexadecimal digits in either case, with ':' or '-' between any two or none.
/// @param what names the address in the refusal of anything else
MacAddress parseMacAddress(const std::string &text, const std::string &what);

/// As 12 lower-case hexadecimal digits.
std::string toString(const MacAddress &address);

} // namespace common
