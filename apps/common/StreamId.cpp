#include "common/StreamId.h"

#include "common/Refusal.h"
#include "common/hexBytes.h"

namespace common {

StreamId parseStreamId(const std::string &text, const std::string &what) {
    const auto id = parseHexBytes<std::tuple_size_v<StreamId>>(text);
    if (!id) {
        throw Refusal(what + ": '" + text + "' is no stream ID such as 02:00:00:00:00:01:00:00");
    }
    return *id;
}

std::string toString(const StreamId &id) {
    return hexText(id);
}

} // namespace common
