#include "analyser/files/Output.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "common/Refusal.h"
#include "common/writeIfReady.h"

namespace analyser {

Output::Output(const std::string &name, std::function<bool()> gaveUp) : gaveUp(std::move(gaveUp)) {
    if (!name.empty()) {
        file = common::FileDescriptor(::open(name.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666));
        if (file.get() < 0) {
            throw common::Refusal("cannot write the output '" + name + "': " + std::strerror(errno));
        }
    }
}

void Output::begin() {
    // What is no regular file, as a pipe, can't be emptied and needn't be.
    if (file.get() >= 0 && ::ftruncate(file.get(), 0) != 0 && errno != EINVAL) {
        fail(std::strerror(errno));
    }
}

void Output::write(std::string_view text) {
    while (!text.empty() && error.empty()) {
        if (waitsInVain()) {
            fail("its reader takes no more");
            return;
        }
        const auto written = common::writeIfReady(descriptor(), text);
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EAGAIN && errno != EINTR) {
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

/// Waits for the reader. One that has stopped reading must not keep the program from ending when it is time to.
bool Output::waitsInVain() const {
    using Clock = std::chrono::steady_clock;
    constexpr auto patience = std::chrono::seconds(1);
    constexpr int slice = 50; // ms
    std::optional<Clock::time_point> lastMoment;
    pollfd ready{descriptor(), POLLOUT, 0};
    while (::poll(&ready, 1, slice) <= 0) {
        const auto now = Clock::now();
        if (!lastMoment && ((gaveUp && gaveUp()) || now >= deadline.value_or(now + patience))) {
            lastMoment = now + patience;
        }
        if (now >= lastMoment.value_or(now + patience)) {
            return true;
        }
    }
    return false;
}

} // namespace analyser
