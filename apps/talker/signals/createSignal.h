#pragma once

#include <memory>
#include <string>

#include "talker/signals/SignalSource.h"

namespace talker {

/// Makes the signal that a text such as "sine:1000:0.5" describes.
/// @throws common::Refusal for an unknown kind and for values out of range
std::unique_ptr<const SignalSource> createSignal(const std::string &text);

} // namespace talker
