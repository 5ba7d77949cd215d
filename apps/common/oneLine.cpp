#include "common/oneLine.h"

#include <algorithm>

#include "common/Text.h"

namespace common {

std::string oneLine(std::string_view value) {
    std::string result(value);
    std::replace_if(result.begin(), result.end(), text::isControl, ' ');
    return result;
}

} // namespace common
