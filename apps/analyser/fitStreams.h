#pragma once

#include <string>
#include <vector>

#include "analyser/AnalyserOptions.h"
#include "discovery/Findings.h"

namespace analyser {

struct FittedStreams {
    std::vector<monitoring::StreamSettings> streams;
    /// What the user has to know of them, in sentences without a stop.
    std::vector<std::string> notes;
};

/// Whether enough was heard of all that are named, or of all whose settings are left open.
bool areHeard(const std::vector<StreamRequest> &requests, const discovery::Findings &findings);

/**
 * Completes the streams with what was heard of them; with 2 channels, 6 samples and 16 bits where nothing was.
 * @throws common::Refusal for an address that sends several streams, and for a stream that can't be monitored
 */
FittedStreams fitStreams(const std::vector<StreamRequest> &requests, const discovery::Findings &findings);

/// All streams that can be monitored, in the order of the list. @param mostStreams of them
FittedStreams allStreams(const discovery::Findings &findings, std::size_t mostStreams);

/**
 * What is shown of these streams if nothing else is wanted: the levels of all channels, and waveform and spectrum of
 * the first one. @param mostChannels whose levels are shown
 * @param notes gets what is left out
 */
std::map<std::string, std::vector<std::string>> overviewOf(const std::vector<monitoring::StreamSettings> &streams,
                                                           std::size_t mostChannels, std::vector<std::string> &notes);

} // namespace analyser
