#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "monitoring/Message.h"
#include "monitoring/Result.h"
#include "monitoring/Status.h"

namespace monitoring {

/// What a listener was too slow for.
struct LeftOut {
    std::uint64_t results = 0;
    std::uint64_t messages = 0;
};

/// One who hears of a session: a screen, a file, a page. Everything is called on one thread, its Delivery's. A listener
/// that throws hears no more.
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
    /// So much was left out before what comes next, because this listener was too slow for it.
    virtual void leftOut(const LeftOut & /*amount*/) {}
    /// After all else.
    virtual void end(const Status & /*status*/) {}

    /// When wake() wants to be called, if nothing else comes before.
    virtual std::optional<Clock::time_point> due() const { return std::nullopt; }
    virtual void wake() {}
};

} // namespace monitoring
