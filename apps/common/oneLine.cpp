#include "common/oneLine.h"

#include <algorithm>

namespace common {

std::string oneLine(std::string_view text) {
    std::string result(text);
    std::replace_if(
        result.begin(), result.end(),
        [](char character) {
            const auto byte = static_cast<unsigned char>(character);
            return byte < 0x20 || byte == 0x7f;
        },
        ' ');
    return result;
}

} // namespace common
