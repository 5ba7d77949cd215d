#pragma once

#include <map>
#include <string>

#include <sonvex/SoundLevelValueType.h>

namespace process {

/// The values of a sound level result, by name. Their number is the length of every result.
const std::map<std::string, sonvex::iprocess::SoundLevelValueType> &soundLevelValueTypes();

} // namespace process
