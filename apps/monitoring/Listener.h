#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "monitoring/Message.h"
#include "monitoring/Result.h"
#include "monitoring/Status.h"

namespace monitoring {

/// One who hears of a session: a screen, a file, a page. Everything is called on one thread, its Delivery's.
class Listener {
public:
    using Clock = std::chrono::steady_clock;

    Listener() = default;
    virtual ~Listener() = default;
    Listener(const Listener &) = delete;
    Listener &operator=(const Listener &) = delete;

    /// Before all else.
    virtual void begin() {}
    virtual void result(const Result &result) = 0;
    virtual void message(const Message & /*message*/) {}
    /// About once a second.
    virtual void status(const Status & /*status*/) {}
    /// So many results were left out before what comes next, because this listener was too slow for them.
    virtual void leftOut(std::uint64_t /*results*/) {}
    /// After all else.
    virtual void end(const Status & /*status*/) {}

    /// When wake() wants to be called, if nothing else comes before.
    virtual std::optional<Clock::time_point> due() const { return std::nullopt; }
    virtual void wake() {}
};

} // namespace monitoring
