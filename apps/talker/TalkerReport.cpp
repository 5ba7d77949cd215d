#include "talker/TalkerReport.h"

#include <iomanip>
#include <sstream>

namespace talker {

namespace {

double milliseconds(std::chrono::nanoseconds duration) {
    return std::chrono::duration<double, std::milli>(duration).count();
}

} // namespace

void TalkerReport::note(const FrameFaults &ofFrame) {
    const bool dropped = ofFrame[Fault::Drop].has_value();
    for (std::size_t i = 0; i < faults.size(); ++i) {
        const auto fault = static_cast<Fault>(i);
        if (ofFrame[fault] && (!dropped || fault == Fault::Drop || faultOptions[i].lasts)) {
            ++faults[i];
        }
    }
}

std::string TalkerReport::toString() const {
    std::ostringstream text;
    text << std::fixed << std::setprecision(3);
    text << "Sent " << framesSent << " frames, " << samplesPerChannel << " samples per channel, in "
         << std::chrono::duration<double>(elapsed).count() << " s.\n";

    const char *separator = "Faults: ";
    for (std::size_t i = 0; i < faults.size(); ++i) {
        if (faults[i] > 0) {
            text << separator << faults[i] << " " << faultOptions[i].name;
            separator = ", ";
        }
    }
    text << (faults == decltype(faults){} ? "Faults: none.\n" : ".\n");

    text << "The latest frame was " << milliseconds(worstLateness) << " ms late, " << lateFrames
         << " frames by more than a packet interval of " << milliseconds(packetInterval) << " ms.\n";
    return text.str();
}

} // namespace talker
