#include "talker/ReplayReport.h"

#include "common/Text.h"

namespace talker {

std::string ReplayReport::toString() const {
    const auto number = [](std::chrono::nanoseconds duration, double unit) {
        return text::fixed(static_cast<double>(duration.count()) / unit, 3);
    };
    return "Sent " + text::counted(framesSent, "frame") + " in " + number(elapsed, 1e9) +
           " s.\nLeft out: " + std::to_string(cut) + " that the capture had cut, " + std::to_string(tooLong) +
           " longer than the adapter takes, " + std::to_string(tooShort) + " shorter than an Ethernet header.\n" +
           "The latest frame was " + number(worstLateness, 1e6) + " ms late. The times of the capture jumped " +
           std::to_string(jumps) + " times.\n";
}

} // namespace talker
