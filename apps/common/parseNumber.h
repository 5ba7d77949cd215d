#pragma once

#include <charconv>
#include <limits>
#include <sstream>
#include <string>

#include "common/Refusal.h"

namespace common {

/// The number that is the whole of the text, in plain notation whatever the locale.
/// @param what names the number in the refusal of everything outside min to max
template <typename Number>
Number parseNumber(const std::string &text, const std::string &what, Number min, Number max) {
    Number value = {};
    const char *end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    if (result.ec != std::errc() || result.ptr != end || !(value >= min && value <= max)) {
        std::ostringstream refusal;
        refusal.precision(std::numeric_limits<double>::digits10);
        refusal << what << ": '" << text << "' is no number from " << min << " to " << max;
        throw Refusal(refusal.str());
    }
    return value;
}

} // namespace common
