#include "common/Refusal.h"

namespace common {

Refusal::Refusal(const std::string &line, int newExitStatus) : std::runtime_error(line), status(newExitStatus) {}

} // namespace common
