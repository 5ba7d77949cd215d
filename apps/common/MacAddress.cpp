#include "common/MacAddress.h"

#include "common/Refusal.h"
#include "common/hexBytes.h"

namespace common {

MacAddress parseMacAddress(const std::string &text, const std::string &what) {
    const auto address = parseHexBytes<std::tuple_size_v<MacAddress>>(text);
    if (!address) {
        throw Refusal(what + ": '" + text + "' is no MAC address such as 02:00:00:00:00:01");
    }
    return *address;
}

std::string toString(const MacAddress &address) {
    return hexText(address);
}

} // namespace common
