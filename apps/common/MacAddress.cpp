#include "common/MacAddress.h"

#include <charconv>

#include "common/Refusal.h"

namespace common {

MacAddress parseMacAddress(const std::string &text, const std::string &what) {
    MacAddress address = {};
    const bool separated = text.size() == 17 && (text[2] == ':' || text[2] == '-');
    const std::size_t step = separated ? 3 : 2;
    bool valid = separated || text.size() == 12;
    for (std::size_t i = 0; valid && i < address.size(); ++i) {
        const char *pair = text.data() + i * step;
        const auto result = std::from_chars(pair, pair + 2, address[i], 16);
        valid = result.ec == std::errc() && result.ptr == pair + 2;
        if (separated && i > 0) {
            valid = valid && pair[-1] == text[2];
        }
    }
    if (!valid) {
        throw Refusal(what + ": '" + text + "' is no MAC address such as 02:00:00:00:00:01");
    }
    return address;
}

std::string toString(const MacAddress &address) {
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (const unsigned byte : address) {
        text += digits[byte / 16];
        text += digits[byte % 16];
    }
    return text;
}

} // namespace common
