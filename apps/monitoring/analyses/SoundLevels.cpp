#include "monitoring/analyses/SoundLevels.h"

#include <utility>

#include <sonvex/ISoundLevelValueConfig.h>

#include "monitoring/analyses/limits.h"
#include "monitoring/meters/SoundLevelMeter.h"

namespace monitoring {

namespace {

constexpr unsigned cyclesPerLevels = 6; // the library measures levels in every sixth cycle

std::shared_ptr<const Analysis> parse(const AnalysisValue &value) {
    (void)value.parts({1});
    ClockSettings clock = value.clock();
    if (clock.internal) {
        clock = ClockSettings();
    }
    if (clock.period > maximumAmount / cyclesPerLevels) {
        value.refuse(" needs a clock of at most external:" + std::to_string(maximumAmount / cyclesPerLevels));
    }
    const Analysis::Channel channel = value.channel();
    if (channel.sampleRate != usualRate) {
        value.refuse(": the stream " + channel.stream + " has " + std::to_string(channel.sampleRate) +
                     " Hz, and sound levels can be measured at " + std::to_string(usualRate) + " Hz only");
    }
    return std::make_shared<SoundLevels>(channel, clock, value.clock().internal);
}

} // namespace

const AnalysisKind SoundLevels::description = {
    "levels", "sets of levels", "CHANNEL[@STREAM]",
    "CHANNEL[@STREAM]: the A, C and Z levels of a channel with fast and slow time weighting, without a gap: one result "
    "for six times the samples of the external clock. The internal clock does not drive them. Of streams of 48 kHz "
    "only.",
    parse};

SoundLevels::SoundLevels(Channel channel, ClockSettings clock, bool timerIsWanted)
    : Analysis(std::move(channel), cyclesPerLevels * clock.period, clock), timerIsWanted(timerIsWanted) {}

std::string SoundLevels::unit() const {
    return "dB relative to a mean square of 1.0";
}

std::vector<std::string> SoundLevels::valueNames() const {
    std::vector<std::string> names;
    names.reserve(levelNames.size());
    for (const LevelName &name : levelNames) {
        names.emplace_back(name.library);
    }
    return names;
}

unsigned SoundLevels::cyclesPerResult() const {
    return cyclesPerLevels;
}

/// The library makes its filters in the first one.
unsigned SoundLevels::cyclesBefore() const {
    return 1;
}

std::vector<std::string> SoundLevels::limits(unsigned bufferSize) const {
    std::vector<std::string> limits;
    if (bufferSize < amount()) {
        limits.push_back(bufferLimit(bufferSize) + "levels are not gapless: of each " + std::to_string(amount()) +
                         " samples the last count as silence, and those before them are left out");
    }
    if (timerIsWanted) {
        limits.push_back("levels can't be measured on a timer and stay on the clock " + clock().toString());
    }
    return limits;
}

sonvex::iprocess::IProcessorConfigBase &SoundLevels::configure() const {
    return sonvex::iprocess::ISoundLevelValueConfig::createInstance(description.name, amount());
}

std::unique_ptr<Meter> SoundLevels::makeMeter(double window) const {
    return std::make_unique<SoundLevelMeter>(resultsIn(window));
}

} // namespace monitoring
