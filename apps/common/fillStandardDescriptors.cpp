#include "common/fillStandardDescriptors.h"

#include <initializer_list>

#include <fcntl.h>
#include <unistd.h>

namespace common {

void fillStandardDescriptors() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(descriptor, F_GETFD) < 0) {
            // In the wrong direction, so that lost output shows. The lowest free place is the one that is missing.
            (void)::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

} // namespace common
