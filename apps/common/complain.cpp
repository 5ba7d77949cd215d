#include "common/complain.h"

#include <cerrno>

#include <unistd.h>

#include "common/oneLine.h"
#include "common/writeIfReady.h"

namespace common {

void complain(const std::string &line) {
    (void)writeIfReady(STDERR_FILENO, std::string(program_invocation_short_name) + ": " + oneLine(line) + '\n');
}

} // namespace common
