#include "analyser/terminal/SoundLevelUnit.h"

#include "common/Text.h"

namespace analyser {

std::string SoundLevelUnit::text(double level) const {
    return ::text::fixed(level + reference.value_or(0.0), 1);
}

} // namespace analyser
