#include "talker/VlanTag.h"

#include "common/parseNumber.h"

namespace talker {

VlanTag VlanTag::parse(const std::string &text, const std::string &what) {
    const std::size_t colon = text.find(':');
    VlanTag tag = {common::parseNumber<std::uint16_t>(text.substr(0, colon), what + ", VLAN", 0, 4094), 3};
    if (colon != std::string::npos) {
        tag.priority =
            static_cast<std::uint8_t>(common::parseNumber<unsigned>(text.substr(colon + 1), what + ", priority", 0, 7));
    }
    return tag;
}

} // namespace talker
