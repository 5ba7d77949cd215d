#pragma once

#include <string>
#include <string_view>

namespace common {

/// With a blank in place of every control character.
std::string oneLine(std::string_view value);

} // namespace common
