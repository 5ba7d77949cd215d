#pragma once

#include "analyser/AnalyserOptions.h"

namespace analyser {

/// The command streams: listens at an adapter and writes what it has heard to the standard output. Meanwhile it says
/// how far it is, if the error output is a terminal.
/// @throws common::Refusal if the adapter can't be listened at, or the list can't be written
void listStreams(const StreamsOptions &options);

} // namespace analyser
