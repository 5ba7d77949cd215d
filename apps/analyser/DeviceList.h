#pragma once

#include "analyser/AnalyserOptions.h"

namespace analyser {

class Output;

/// Writes the adapters as the library lists them.
void listDevices(Format format, Output &output);

} // namespace analyser
