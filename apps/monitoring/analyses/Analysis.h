#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "monitoring/analyses/Settings.h"

namespace sonvex::iprocess {
class IProcessorConfigBase;
} // namespace sonvex::iprocess

namespace monitoring {

struct AnalysisKind;
class Meter;

/// One analysis of one channel, as it was asked for. Each kind derives from it, and says there all that differs between
/// kinds. Never changes.
class Analysis {
public:
    struct Channel {
        std::string stream;              ///< its key
        unsigned number = 0;             ///< from 0
        unsigned sampleRate = usualRate; ///< of the stream, Hz
    };
    /// For the heads of files: its name in one word and for the eye, and its value as text.
    struct Setting {
        std::string name;
        std::string label;
        std::string value;
        bool isNumber;
        std::string physicalUnit; ///< with the blank before it; empty for none
    };

    virtual ~Analysis();
    Analysis(const Analysis &) = delete;
    Analysis &operator=(const Analysis &) = delete;

    virtual const AnalysisKind &kind() const = 0;
    const Channel &channel() const { return place; }
    /// Samples of one result.
    unsigned amount() const { return samples; }
    const ClockSettings &clock() const { return resultClock; }
    /// Differs from that of every other analysis.
    std::string name() const;
    /// What a value is, in words.
    virtual std::string unit() const = 0;
    /// What the kind has beyond channel, amount and clock.
    virtual std::vector<Setting> settings() const { return {}; }
    /// The names of the values, where they are no curve.
    virtual std::vector<std::string> valueNames() const { return {}; }
    /// Of the clock, from one result to the next.
    virtual unsigned cyclesPerResult() const { return 1; }
    /// Cycles of the clock that pass before the samples of the first result begin.
    virtual unsigned cyclesBefore() const { return 0; }
    /// Samples that a result rests on, those of earlier results that it is averaged with included.
    virtual std::uint64_t extent() const { return samples; }
    /// Seconds from one result to the next.
    double period() const { return resultClock.seconds(place.sampleRate) * cyclesPerResult(); }

    /// Why it can't be followed with a buffer of so many samples, as "holds no …"; empty if it can.
    virtual std::string bufferRefusal(unsigned /*bufferSize*/) const { return ""; }
    /// What it can't do with these settings though it runs, in sentences without a stop.
    /// @param bufferSize in samples
    virtual std::vector<std::string> limits(unsigned bufferSize) const = 0;
    /// The library's configuration for it, which the library owns.
    virtual sonvex::iprocess::IProcessorConfigBase &configure() const = 0;
    /// Sets what counts only once there is a processor. @param config what configure() gave
    virtual void configureProcessor(sonvex::iprocess::IProcessorConfigBase &config) const;
    /// @param window seconds that its highest values and means are taken over; 0 for the whole run
    virtual std::unique_ptr<Meter> makeMeter(double window) const = 0;

protected:
    Analysis(Channel channel, unsigned amount, ClockSettings clock);

    /// How many results come in so many seconds, at least one; 0 for 0.
    std::size_t resultsIn(double seconds) const;

private:
    Channel place;
    unsigned samples;
    ClockSettings resultClock;
};

using Analyses = std::vector<std::shared_ptr<const Analysis>>;

/// Of all of them, each sentence once, joined; "" if nothing.
std::string describeLimits(const Analyses &analyses, unsigned bufferSize);

} // namespace monitoring
