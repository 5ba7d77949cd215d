#include "analyser/SignalWatcher.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

#include "common/Refusal.h"

namespace analyser {

namespace {

constexpr std::array endSignals{SIGINT, SIGTERM, SIGHUP, SIGQUIT};

volatile std::sig_atomic_t ending = 0;
int pipeEnds[2] = {-1, -1}; // NOLINT(modernize-avoid-c-arrays): what pipe2 takes

extern "C" void passSignalOn(int number) {
    const int keptError = errno;
    const auto byte = static_cast<unsigned char>(number);
    (void)!::write(pipeEnds[1], &byte, 1);
    errno = keptError;
}

extern "C" void requestEnd(int number) {
    ending = 1;
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    for (const int endSignal : endSignals) {
        struct sigaction now {};
        if (sigaction(endSignal, nullptr, &now) == 0 && now.sa_handler == requestEnd) {
            sigaction(endSignal, &action, nullptr);
        }
    }
    passSignalOn(number);
}

bool isEndSignal(int number) {
    return std::find(endSignals.begin(), endSignals.end(), number) != endSignals.end();
}

} // namespace

SignalWatcher::SignalWatcher(Handlers newHandlers) : handlers(std::move(newHandlers)) {
    if (::pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0) {
        throw common::Refusal(std::string("cannot watch for signals: ") + std::strerror(errno),
                              common::Refusal::failure);
    }
    notifier = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    QObject::connect(notifier.get(), &QSocketNotifier::activated, [this] { drain(); });
    for (const int number : endSignals) {
        watch(number);
    }
    if (handlers.resize) {
        watch(SIGWINCH);
    }
    if (handlers.stop) {
        watch(SIGTSTP);
    }
    if (handlers.resume) {
        watch(SIGCONT);
    }
}

SignalWatcher::~SignalWatcher() {
    for (const auto &[number, action] : before) {
        sigaction(number, &action, nullptr);
    }
    notifier.reset();
    ::close(pipeEnds[0]);
    ::close(pipeEnds[1]);
}

void SignalWatcher::watch(int number) {
    struct sigaction old {};
    sigaction(number, nullptr, &old);
    const bool mayBeIgnored = number == SIGHUP || number == SIGTSTP; // by nohup, or a shell without job control
    if (mayBeIgnored && old.sa_handler == SIG_IGN) {
        return;
    }
    struct sigaction action {};
    action.sa_handler = isEndSignal(number) ? requestEnd : passSignalOn;
    sigemptyset(&action.sa_mask);
    // Without SA_RESTART: a write to a reader that has stopped reading has to notice the request to end.
    sigaction(number, &action, nullptr);
    before[number] = old;
}

bool SignalWatcher::endRequested() {
    return ending != 0;
}

void SignalWatcher::drain() {
    unsigned char number = 0;
    while (::read(pipeEnds[0], &number, 1) == 1) {
        handle(number);
    }
}

void SignalWatcher::handle(int number) {
    switch (number) {
    case SIGWINCH:
        handlers.resize();
        break;
    case SIGTSTP:
        handlers.stop();
        (void)std::raise(SIGSTOP);
        break;
    case SIGCONT:
        handlers.resume();
        break;
    default:
        handlers.end();
    }
}

} // namespace analyser
