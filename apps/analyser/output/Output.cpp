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
    } else if (::isatty(STDOUT_FILENO) == 1) {
        file = common::FileDescriptor(::open("/proc/self/fd/1", O_WRONLY | O_NOCTTY | O_CLOEXEC)); // others share that
    }
    // A terminal that is ready may have room for a part only, and nobody may ever read that.
    if (file.get() >= 0 && ::isatty(file.get()) == 1) {
        (void)::fcntl(file.get(), F_SETFL, O_NONBLOCK);
    }
}

void Output::begin() {
    // What is no regular file, as a pipe, can't be emptied and needn't be.
    if (file.get() >= 0 && ::ftruncate(file.get(), 0) != 0 && errno != EINVAL) {
        fail(std::strerror(errno));
    }
}

void Output::write(std::string_view text) {
    std::optional<Ending::Clock::time_point> lastMoment; // while nothing is taken
    while (!text.empty() && error.empty()) {
        if (isTooLate()) {
            return;
        }
        const auto written = common::writeIfReady(descriptor(), text);
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
            lastMoment.reset();
        } else if (errno == EAGAIN) {
            waitForReader(lastMoment);
        } else if (errno != EINTR) {
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

/// A reader that is slow must not keep a user waiting who has asked for the end.
bool Output::isTooLate() {
    constexpr std::chrono::seconds patience(5);
    if (!urgentEnd && ending->isUrgent()) {
        urgentEnd = Ending::Clock::now() + patience;
    }
    if (urgentEnd && Ending::Clock::now() >= *urgentEnd) {
        fail("its reader takes no more");
    }
    return !error.empty();
}

/// A reader that takes nothing must not keep the program from ending when it is time to.
void Output::waitForReader(std::optional<Ending::Clock::time_point> &lastMoment) {
    constexpr std::chrono::seconds patience(1);
    constexpr int slice = 50; // ms
    pollfd ready{descriptor(), POLLOUT, 0};
    (void)::poll(&ready, 1, slice);
    if (!lastMoment && ending->hasBegun()) {
        lastMoment = Ending::Clock::now() + patience;
    }
    if (lastMoment && Ending::Clock::now() >= *lastMoment) {
        fail("its reader takes no more");
    }
}

} // namespace analyser
