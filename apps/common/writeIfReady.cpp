#include "common/writeIfReady.h"

#include <algorithm>
#include <cerrno>
#include <climits>

#include <poll.h>
#include <unistd.h>

namespace common {

ssize_t writeIfReady(int descriptor, std::string_view text) {
    pollfd state{descriptor, POLLOUT, 0};
    if (::poll(&state, 1, 0) <= 0) {
        errno = EAGAIN;
        return -1;
    }
    return ::write(descriptor, text.data(), std::min<std::size_t>(text.size(), PIPE_BUF));
}

} // namespace common
