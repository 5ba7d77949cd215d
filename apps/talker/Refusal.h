#pragma once

#include <stdexcept>

namespace talker {

/// A request that the talker turns down before it has sent anything; the text is one line for its user.
class Refusal : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace talker
