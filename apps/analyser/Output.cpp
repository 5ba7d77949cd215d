#include "analyser/Output.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "analyser/Refusal.h"
#include "analyser/SignalWatcher.h"

namespace analyser {

Output::Output(const std::string &file)
    : fd(file.empty() ? STDOUT_FILENO : ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666)) {
    if (fd < 0) {
        throw Refusal(Refusal::usage, "cannot write the output '" + file + "': " + std::strerror(errno));
    }
}

Output::~Output() {
    if (fd != STDOUT_FILENO) {
        ::close(fd);
    }
}

void Output::write(std::string_view text) {
    while (!text.empty() && error.empty()) {
        if (waitsInVain()) {
            fail("its reader takes no more");
            return;
        }
        const auto written = ::write(fd, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EAGAIN) {
            pollfd ready{fd, POLLOUT, 0};
            (void)::poll(&ready, 1, -1);
        } else if (errno != EINTR) {
            fail(std::strerror(errno));
        }
    }
}

void Output::fail(const std::string &reason) {
    error = reason;
    if (failureHandler) {
        failureHandler();
    }
}

/// A reader that has stopped reading must not keep the program from ending when it is told to.
bool Output::waitsInVain() const {
    constexpr int patience = 1000; // ms
    pollfd ready{fd, POLLOUT, 0};
    return SignalWatcher::endRequested() && ::poll(&ready, 1, patience) == 0;
}

} // namespace analyser
