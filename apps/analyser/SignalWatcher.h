#pragma once

#include <csignal>
#include <functional>
#include <memory>
#include <vector>

#include <QSocketNotifier>

#include "common/FileDescriptor.h"

namespace analyser {

/// Brings the signals of the system into the event loop of the main thread. It has to be made before any other thread,
/// which then leave them to it. One can exist at a time.
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

    /// Whether a request to end has arrived, also before the event loop has seen it. On any thread.
    static bool endRequested();

private:
    void drain();
    void handle(int number);

    Handlers handlers;
    sigset_t maskBefore{};
    common::FileDescriptor descriptor;
    std::unique_ptr<QSocketNotifier> notifier;
};

} // namespace analyser
