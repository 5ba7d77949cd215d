#pragma once

#include <string>

#include "discovery/Findings.h"

namespace analyser {

/// What was heard as text for a person, at most 120 columns wide. Of very many streams it shows those with the most
/// frames.
std::string streamTable(const discovery::Findings &findings, const std::string &device);

} // namespace analyser
