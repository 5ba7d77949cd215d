#pragma once

#include <string>

#include "common/AafFormat.h"

namespace common {

/// Reads what names a stream: its source address, or its ID.
/// @return 12 or 16 lower-case digits
/// @throws Refusal for any other text
std::string parseStreamKey(const std::string &text, const std::string &what);

/// What the monitor's option --stream takes: "020000000001,channels=2,samples=6,format=int16", with the rate unless it
/// is 48 kHz.
std::string streamArgument(const std::string &key, unsigned channels, unsigned samples, const AafFormat &format,
                           unsigned rate);

} // namespace common
