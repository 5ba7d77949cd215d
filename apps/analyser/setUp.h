#pragma once

#include "analyser/AnalyserOptions.h"

namespace analyser {

/**
 * Makes the session of the options: listens at the adapter for what the streams are, where the command line leaves that
 * open, and complains about what it can't have. An end that is asked for ends the listening.
 * @throws common::Refusal if nothing can be monitored, or what was heard contradicts the command line
 */
monitoring::SessionSettings setUp(const MonitorOptions &options);

} // namespace analyser
