#pragma once

#include <string>

#include "monitoring/Listener.h"
#include "monitoring/Message.h"
#include "monitoring/SessionSettings.h"
#include "monitoring/Status.h"

/// What a session says, in sentences for the eye.
namespace monitoring {

/// "waiting" for the first result, "running" or "silent".
std::string describe(AnalysisStatus::State state);
std::string describe(const Message &message);
/// "3 results", with the messages if there are any.
std::string describe(const LeftOut &amount);
std::string describe(const Condition &condition, const SessionSettings &settings);
/// Of all conditions; of the limits of the analyses, if there is none; "" if all is well.
std::string describeHealth(const Status &status, const SessionSettings &settings);
/// What is wrong with the clocks of the streams' media; "" while they are in order.
std::string describeClocks(const Status &status);
/// Breaks in the sequence, over all streams.
std::uint64_t packetsMissed(const Status &status);
/// What was refused or is no number, over all streams.
StreamStatus refusals(const Status &status);
/// The summary for the eye, one line each for the run and every analysis.
std::string summaryText(const Status &status, const std::string &linePrefix);

} // namespace monitoring
