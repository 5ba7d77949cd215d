#include "analyser/SignalWatcher.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <utility>

#include <sys/signalfd.h>
#include <unistd.h>

#include "common/Refusal.h"

namespace analyser {

namespace {

constexpr std::array endSignals{SIGINT, SIGTERM, SIGHUP, SIGQUIT};

std::atomic<bool> ending{false};

/// By nohup, or a shell without job control.
bool isIgnored(int number) {
    struct sigaction action {};
    return sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

} // namespace

SignalWatcher::SignalWatcher(Handlers newHandlers) : handlers(std::move(newHandlers)) {
    sigset_t watched;
    sigemptyset(&watched);
    for (const int number : endSignals) {
        if (number == SIGHUP && isIgnored(number)) {
            continue;
        }
        // A shell without job control has the others ignored behind an '&'; who sends one to this program means it.
        (void)std::signal(number, SIG_DFL);
        sigaddset(&watched, number);
    }
    if (handlers.resize) {
        sigaddset(&watched, SIGWINCH);
    }
    if (handlers.stop && !isIgnored(SIGTSTP)) {
        sigaddset(&watched, SIGTSTP);
    }
    if (handlers.resume) {
        sigaddset(&watched, SIGCONT);
    }
    pthread_sigmask(SIG_BLOCK, &watched, &maskBefore);
    descriptor = common::FileDescriptor(::signalfd(-1, &watched, SFD_NONBLOCK | SFD_CLOEXEC));
    if (descriptor.get() < 0) {
        throw common::Refusal(std::string("cannot watch for signals: ") + std::strerror(errno),
                              common::Refusal::failure);
    }
    notifier = std::make_unique<QSocketNotifier>(descriptor.get(), QSocketNotifier::Read);
    QObject::connect(notifier.get(), &QSocketNotifier::activated, [this] { drain(); });
}

SignalWatcher::~SignalWatcher() {
    notifier.reset();
    // What comes as late as this must not end a program that has done its work.
    signalfd_siginfo late{};
    while (::read(descriptor.get(), &late, sizeof late) == sizeof late) {
    }
    pthread_sigmask(SIG_SETMASK, &maskBefore, nullptr);
}

bool SignalWatcher::endRequested() {
    sigset_t pending;
    sigpending(&pending);
    for (const int number : endSignals) {
        if (sigismember(&pending, number) == 1) {
            return true;
        }
    }
    return ending;
}

void SignalWatcher::drain() {
    signalfd_siginfo signal{};
    while (::read(descriptor.get(), &signal, sizeof signal) == sizeof signal) {
        handle(static_cast<int>(signal.ssi_signo));
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
    default: {
        ending = true;
        sigset_t again; // the next one is the system's
        sigemptyset(&again);
        for (const int endSignal : endSignals) {
            sigaddset(&again, endSignal);
        }
        pthread_sigmask(SIG_UNBLOCK, &again, nullptr);
        handlers.end();
    }
    }
}

} // namespace analyser
