#pragma once

#include <csignal>
#include <functional>
#include <map>
#include <memory>

#include <QSocketNotifier>

namespace analyser {

/// Brings the signals of the system into the event loop of the thread that made it. One can exist at a time.
class SignalWatcher {
public:
    /// A function that is empty leaves its signals as they are.
    struct Handlers {
        /// A request to end (Ctrl-C, SIGTERM, hang-up). A second one ends the program at once, on the system's own way.
        std::function<void()> end;
        /// The window has another size.
        std::function<void()> resize;
        /// The program is about to be stopped (Ctrl-Z).
        std::function<void()> stop;
        /// It goes on.
        std::function<void()> resume;
    };

    explicit SignalWatcher(Handlers newHandlers);
    ~SignalWatcher();
    SignalWatcher(const SignalWatcher &) = delete;
    SignalWatcher &operator=(const SignalWatcher &) = delete;

    /// Whether a request to end has arrived, also before the event loop has seen it.
    static bool endRequested();

private:
    void watch(int number);
    void drain();
    void handle(int number);

    Handlers handlers;
    std::unique_ptr<QSocketNotifier> notifier;
    std::map<int, struct sigaction> before; // by the signal
};

} // namespace analyser
