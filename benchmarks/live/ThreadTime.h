#pragma once

#include <functional>

#include <sys/types.h>

namespace live {

/// The CPU time of a thread of this process, whoever owns it.
class ThreadTime {
public:
    /// Of the one thread that @p start begins. @throws std::logic_error if it begins none, or several
    explicit ThreadTime(const std::function<void()> &start);

    double nanoseconds() const;
    /// How long the thread could have run, but had no core, so far.
    double waitedMilliseconds() const;

private:
    pid_t thread = 0;
};

} // namespace live
