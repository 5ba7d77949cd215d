#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <variant>

#include "monitoring/Listener.h"

namespace monitoring {

/**
 * Brings a session to one listener, on a thread of the listener's own and through a queue that has a bound: a slow one
 * harms nobody. When results and messages have no room, either the oldest of them go, and the listener is told how
 * many, or who posts waits.
 *
 * Threads: everything is called on the session's thread, and the listener on its own.
 */
class Delivery {
public:
    enum class WhenFull { dropOldest, wait };

    struct Terms {
        std::size_t bound; ///< bytes of results and messages that may be on their way
        WhenFull whenFull = WhenFull::dropOldest;
        /// Ends a wait when it becomes true; may be empty.
        std::function<bool()> givesUp{};
        /// Called once, on the listener's thread, when the listener has thrown; may be empty.
        std::function<void()> failed{};
    };

    Delivery(std::unique_ptr<Listener> listener, Terms terms);
    /// Returns when the listener has taken all that is on its way.
    ~Delivery();
    Delivery(const Delivery &) = delete;
    Delivery &operator=(const Delivery &) = delete;

    void post(std::shared_ptr<const Result> result);
    void post(std::shared_ptr<const Message> message);
    /// A newer status takes the place of one that has not been heard.
    void post(std::shared_ptr<const Status> status);
    /// Runs @p function on the listener's thread, behind what is on its way, and waits for it up to @p patience.
    void run(std::function<void()> function, std::chrono::milliseconds patience);
    /// The last thing, with what the session has come to.
    /// @param done is called on the listener's thread when it has taken all; may be empty
    void end(std::shared_ptr<const Status> status, std::function<void()> done = {});

    LeftOut leftOut() const;
    /// What the listener has thrown; empty while all is well.
    std::string failure() const;

private:
    struct End {
        std::shared_ptr<const Status> status;
        std::function<void()> done;
    };
    using Item = std::variant<std::shared_ptr<const Result>, std::shared_ptr<const Message>,
                              std::shared_ptr<const Status>, std::function<void()>, End>;

    void add(Item item);
    bool isFull(std::size_t size) const { return bytes > 0 && bytes + size > terms.bound; }
    void makeRoom(std::unique_lock<std::mutex> &lock, std::size_t size);
    void deliver();
    bool pass(const Item &item);
    template <class Function>
    void tell(const Function &function);
    template <class Function>
    void guard(const Function &function);

    const std::unique_ptr<Listener> listener;
    const Terms terms;
    bool hears = true; ///< until it throws; the listener's thread alone asks

    mutable std::mutex mutex; ///< guards all below; never held while the listener is called
    std::condition_variable added;
    std::condition_variable taken;
    std::deque<Item> items;
    std::size_t bytes = 0; ///< of what the bound is for
    LeftOut dropped;
    LeftOut untold; ///< of the dropped ones
    std::string reason;
    bool ended = false;

    std::thread thread; ///< last: it uses all of the above
};

} // namespace monitoring
