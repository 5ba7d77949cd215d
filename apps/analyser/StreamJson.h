#pragma once

#include <string>

#include "discovery/Findings.h"

namespace analyser {

/// What was heard as one JSON document with a line at its end. Units are SI's, what is not known is null.
std::string streamJson(const discovery::Findings &findings, const std::string &device);

} // namespace analyser
