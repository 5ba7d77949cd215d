#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include <QSemaphore>
#include <QString>

#include <gtest/gtest.h>

namespace support {

/// Puts a log handler in the place of the process's own for as long as it lives.
class LogHandler {
public:
    explicit LogHandler(std::function<void(const QString &)> newFunction) {
        std::atomic_store(&function, std::make_shared<const Function>(std::move(newFunction)));
        earlier = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &context, const QString &text) {
            EXPECT_STREQ(context.category, "default") << text.toStdString();
            (*std::atomic_load(&function))(text);
        });
    }
    ~LogHandler() { qInstallMessageHandler(earlier); }
    LogHandler(const LogHandler &) = delete;
    LogHandler &operator=(const LogHandler &) = delete;

private:
    using Function = std::function<void(const QString &)>;

    static inline std::shared_ptr<const Function> function; ///< the latest; a thread may be in it when its object goes
    QtMessageHandler earlier;
};

/// Makes the first thread that logs a text wait there until it is let go, at the latest after 20 s.
class StalledLine {
public:
    explicit StalledLine(const char *text)
        : handler([text = QString::fromLatin1(text), state = state](const QString &line) {
              if (line.contains(text) && !state->stalled.exchange(true)) {
                  state->gate.tryAcquire(1, 20000);
              }
          }) {}
    ~StalledLine() { release(); }
    StalledLine(const StalledLine &) = delete;
    StalledLine &operator=(const StalledLine &) = delete;

    bool hasStalled() const { return state->stalled; }
    void release() { state->gate.release(); }

private:
    struct State {
        std::atomic<bool> stalled{false};
        QSemaphore gate;
    };

    const std::shared_ptr<State> state = std::make_shared<State>();
    LogHandler handler;
};

} // namespace support
