#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <variant>

#include "monitoring/Listener.h"

namespace monitoring {

/**
 * Brings a session to one listener, on a thread of the listener's own and through a queue that has a bound: a slow one
 * harms nobody. Results are what there is much of; when they have no room, either the oldest of them goes, and the
 * listener is told how many, or who posts waits.
 *
 * Threads: everything is called on the session's thread, and the listener on its own.
 */
class Delivery {
public:
    enum class WhenFull { dropOldest, wait };

    /// @param bound bytes of results that may be on their way @param givesUp ends a wait when it becomes true; may be
    /// empty
    Delivery(std::unique_ptr<Listener> listener, std::size_t bound, WhenFull whenFull,
             std::function<bool()> givesUp = {});
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
    void end(std::shared_ptr<const Status> status);

    /// Results that the listener was too slow for.
    std::uint64_t leftOut() const;

private:
    struct End {
        std::shared_ptr<const Status> status;
    };
    using Item = std::variant<std::shared_ptr<const Result>, std::shared_ptr<const Message>,
                              std::shared_ptr<const Status>, std::function<void()>, End>;

    void add(Item item);
    void makeRoom(std::unique_lock<std::mutex> &lock, std::size_t size);
    void deliver();
    bool pass(const Item &item);

    const std::unique_ptr<Listener> listener;
    const std::size_t bound;
    const WhenFull whenFull;
    const std::function<bool()> givesUp;

    mutable std::mutex mutex; ///< guards all below; never held while the listener is called
    std::condition_variable added;
    std::condition_variable taken;
    std::deque<Item> items;
    std::size_t bytes = 0; ///< of the results in it
    std::uint64_t dropped = 0;
    std::uint64_t untold = 0; ///< of the dropped ones
    bool ended = false;

    std::thread thread; ///< last: it uses all of the above
};

} // namespace monitoring
