#include "analyser/SignalWatcher.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

#include "analyser/Refusal.h"

namespace analyser {

namespace {

constexpr std::array watchedSignals{SIGINT, SIGTERM, SIGHUP, SIGWINCH};

volatile std::sig_atomic_t ending = 0;
int pipeEnds[2] = {-1, -1}; // NOLINT(modernize-avoid-c-arrays): what pipe2 takes

extern "C" void passSignalOn(int number) {
    const int keptError = errno;
    if (number != SIGWINCH) {
        ending = 1;
    }
    const auto byte = static_cast<unsigned char>(number);
    (void)!::write(pipeEnds[1], &byte, 1);
    errno = keptError;
}

void handleSignals(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    for (const int number : watchedSignals) {
        // Without SA_RESTART: a write to a reader that has stopped reading has to notice the request to end.
        sigaction(number, &action, nullptr);
    }
}

} // namespace

SignalWatcher::SignalWatcher(std::function<void()> onEnd, std::function<void()> onResize)
    : endHandler(std::move(onEnd)), resizeHandler(std::move(onResize)) {
    if (::pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0) {
        throw Refusal(Refusal::failure, std::string("cannot watch for signals: ") + std::strerror(errno));
    }
    notifier = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    QObject::connect(notifier.get(), &QSocketNotifier::activated, [this] { drain(); });
    handleSignals(passSignalOn);
}

SignalWatcher::~SignalWatcher() {
    handleSignals(SIG_DFL);
    notifier.reset();
    ::close(pipeEnds[0]);
    ::close(pipeEnds[1]);
}

bool SignalWatcher::endRequested() {
    return ending != 0;
}

void SignalWatcher::drain() {
    unsigned char number = 0;
    while (::read(pipeEnds[0], &number, 1) == 1) {
        (number == SIGWINCH ? resizeHandler : endHandler)();
    }
}

} // namespace analyser
