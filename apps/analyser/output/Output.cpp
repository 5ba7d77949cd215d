#include "analyser/output/Output.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "common/Refusal.h"
#include "common/writeIfReady.h"

namespace analyser {

Output::Output(const std::string &name, std::shared_ptr<const Ending> ending)
    : shownName(name.empty() ? "the output" : "the output '" + name + "'"), ending(std::move(ending)) {
    if (!name.empty()) {
        file = common::FileDescriptor(::open(name.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666));
        if (file.get() < 0) {
            throw common::Refusal("cannot write " + title() + ": " + std::strerror(errno));
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

std::string Output::failure() const {
    return error.empty() ? "" : "cannot write " + title() + ": " + error;
}

void Output::fail(const std::string &reason) {
    error = reason;
    if (failureHandler) {
        failureHandler();
    }
}

/// Waits for the reader. One that has stopped reading must not keep the program from ending when it is time to, and one
/// that is slow not when the user waits for the end.
bool Output::waitsInVain() {
    constexpr std::chrono::seconds patience(1);
    constexpr std::chrono::seconds urgentPatience(5);
    constexpr int slice = 50; // ms
    std::optional<Ending::Clock::time_point> lastMoment;
    pollfd ready{descriptor(), POLLOUT, 0};
    for (;;) {
        if (!urgentEnd && ending->isUrgent()) {
            urgentEnd = Ending::Clock::now() + urgentPatience;
        }
        if (urgentEnd && Ending::Clock::now() >= *urgentEnd) {
            return true;
        }
        if (::poll(&ready, 1, slice) > 0) {
            return false;
        }
        if (!lastMoment && ending->hasBegun()) {
            lastMoment = Ending::Clock::now() + patience;
        }
        if (lastMoment && Ending::Clock::now() >= *lastMoment) {
            return true;
        }
    }
}

} // namespace analyser
