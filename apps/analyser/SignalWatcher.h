#pragma once

#include <functional>
#include <memory>

#include <QSocketNotifier>

namespace analyser {

/// Brings the signals of the system into the event loop of the thread that made it. One can exist at a time.
class SignalWatcher {
public:
    /// @param onEnd gets the requests to end (Ctrl-C, SIGTERM, hang-up), @param onResize the changes of the window
    SignalWatcher(std::function<void()> onEnd, std::function<void()> onResize);
    ~SignalWatcher();
    SignalWatcher(const SignalWatcher &) = delete;
    SignalWatcher &operator=(const SignalWatcher &) = delete;

    /// Whether a request to end has arrived, also before the event loop has seen it.
    static bool endRequested();

private:
    void drain();

    std::function<void()> endHandler;
    std::function<void()> resizeHandler;
    std::unique_ptr<QSocketNotifier> notifier;
};

} // namespace analyser
