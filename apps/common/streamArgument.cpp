#include "common/streamArgument.h"

#include "common/MacAddress.h"
#include "common/Refusal.h"
#include "common/StreamId.h"
#include "common/hexBytes.h"

namespace common {

std::string parseStreamKey(const std::string &text, const std::string &what) {
    if (const auto address = parseHexBytes<std::tuple_size_v<MacAddress>>(text)) {
        return toString(*address);
    }
    if (const auto id = parseHexBytes<std::tuple_size_v<StreamId>>(text)) {
        return toString(*id);
    }
    throw Refusal(what + ": '" + text +
                  "' is neither a MAC address such as 02:00:00:00:00:01 nor a stream ID such as 0200000000010000");
}

std::string streamArgument(const std::string &key, unsigned channels, unsigned samples, const AafFormat &format,
                           unsigned rate) {
    constexpr unsigned usualRate = 48000;
    return key + ",channels=" + std::to_string(channels) + ",samples=" + std::to_string(samples) +
           ",format=" + std::string(format.name) + (rate != usualRate ? ",rate=" + std::to_string(rate) : "");
}

} // namespace common
