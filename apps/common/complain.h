#pragma once

#include <string>

namespace common {

/// Says one line on the error output, whatever @p line contains. An error output that takes nothing is not waited for.
void complain(const std::string &line);

} // namespace common
