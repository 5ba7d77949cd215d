#include "talker/ReplayTimeline.h"

#include <algorithm>

namespace talker {

ReplayTimeline::Duration ReplayTimeline::next(Duration time) {
    const Duration moment = time - origin.value_or(time);
    const Duration allowed = moment < latest - reordering ? latest : std::min(moment, latest + longestPause);
    origin = time - allowed;
    jumps += allowed == moment ? 0 : 1;
    latest = std::max(latest, allowed);
    return latest;
}

} // namespace talker
