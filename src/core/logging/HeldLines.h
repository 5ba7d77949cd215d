#pragma once

#include <utility>
#include <vector>

#include <QString>

namespace logging {

/**
 * While one lives, the lines of its thread wait; its end hands them to the log in their order. To be declared before a
 * lock, so that it ends after it: a log handler is the host's code, which may wait for whoever wants the lock. One
 * inside another leaves its lines to the outer one.
 */
class HeldLines {
public:
    HeldLines();
    ~HeldLines();
    HeldLines(const HeldLines &) = delete;
    HeldLines &operator=(const HeldLines &) = delete;

    /// Keeps a line, if this thread has an object to keep it.
    static bool keep(QtMsgType level, QString &line);

private:
    bool outermost;
    std::vector<std::pair<QtMsgType, QString>> lines;
};

} // namespace logging
