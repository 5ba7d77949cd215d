#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "analyser/AdapterProbe.h"
#include "analyser/AnalyserOptions.h"
#include "analyser/LogObserver.h"

namespace analyser {

/// What the host knows at one moment.
struct Facts {
    struct Channel {
        std::string stream;
        unsigned channel = 0;
        /// No result for longer than its clock explains.
        bool overdue = false;
    };

    AdapterState adapterState = AdapterState::up;
    /// Since the start.
    double seconds = 0.0;
    LogFacts log;
    std::vector<Channel> channels;
    /// What the newest packets declare, by stream; nothing for a stream without packets.
    std::map<std::string, int> declaredChannels;
};

/// Something that stands in the way of results. The key stays the same while the counts in the text change.
struct Condition {
    std::string key;
    std::string text;
};

/// Finds out why there is silence. Counts matter by their growth from one examination to the next.
class Diagnosis {
public:
    /// A channel that gives no result for so long is silent.
    static constexpr double patience = 2.0; // s

    explicit Diagnosis(const MonitorOptions &newOptions);

    std::vector<Condition> examine(const Facts &facts);

private:
    std::optional<Condition> adapterCondition(const Facts &facts) const;
    std::vector<Condition> streamConditions(const StreamOptions &stream, const Facts &facts) const;
    /// Nothing while the stream's frames are taken.
    std::optional<Condition> refusalOf(const StreamOptions &stream, const Facts &facts) const;
    Condition silenceOf(const StreamOptions &stream, const Facts &facts, unsigned channel) const;

    const MonitorOptions &options;
    LogFacts before;
};

} // namespace analyser
