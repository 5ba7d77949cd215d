#include "monitoring/Delivery.h"

#include <algorithm>
#include <utility>

namespace monitoring {

namespace {

std::size_t sizeOf(const Result &result) {
    return sizeof result + (result.x.capacity() + result.y.capacity()) * sizeof(double);
}

} // namespace

Delivery::Delivery(std::unique_ptr<Listener> listener, std::size_t bound, WhenFull whenFull,
                   std::function<bool()> givesUp)
    : listener(std::move(listener)), bound(bound), whenFull(whenFull), givesUp(std::move(givesUp)),
      thread([this] { deliver(); }) {}

Delivery::~Delivery() {
    end(nullptr);
    thread.join();
}

void Delivery::post(std::shared_ptr<const Result> result) {
    const std::size_t size = sizeOf(*result);
    std::unique_lock<std::mutex> lock(mutex);
    makeRoom(lock, size);
    bytes += size;
    items.emplace_back(std::move(result));
    lock.unlock();
    added.notify_one();
}

void Delivery::post(std::shared_ptr<const Message> message) {
    add(std::move(message));
}

void Delivery::post(std::shared_ptr<const Status> status) {
    {
        const std::lock_guard<std::mutex> lock(mutex);
        const auto isStatus = [](const Item &item) {
            return std::holds_alternative<std::shared_ptr<const Status>>(item);
        };
        items.erase(std::remove_if(items.begin(), items.end(), isStatus), items.end());
    }
    add(std::move(status));
}

void Delivery::run(std::function<void()> function, std::chrono::milliseconds patience) {
    // Shared, for a listener that gets to it only when nobody waits any more.
    const auto done = std::make_shared<bool>(false);
    add([this, function = std::move(function), done] {
        function();
        const std::lock_guard<std::mutex> lock(mutex);
        *done = true;
        taken.notify_all();
    });
    std::unique_lock<std::mutex> lock(mutex);
    taken.wait_for(lock, patience, [&] { return *done; });
}

void Delivery::end(std::shared_ptr<const Status> status) {
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (std::exchange(ended, true)) {
            return;
        }
    }
    add(End{std::move(status)});
}

std::uint64_t Delivery::leftOut() const {
    const std::lock_guard<std::mutex> lock(mutex);
    return dropped;
}

void Delivery::add(Item item) {
    {
        const std::lock_guard<std::mutex> lock(mutex);
        items.push_back(std::move(item));
    }
    added.notify_one();
}

/// A single result always has room, however large it is.
void Delivery::makeRoom(std::unique_lock<std::mutex> &lock, std::size_t size) {
    const auto isFull = [&] { return bytes > 0 && bytes + size > bound; };
    if (whenFull == WhenFull::wait) {
        constexpr std::chrono::milliseconds slice(50);
        while (isFull() && !(givesUp && givesUp())) {
            taken.wait_for(lock, slice);
        }
    }
    for (auto item = items.begin(); isFull() && item != items.end();) {
        if (const auto *result = std::get_if<std::shared_ptr<const Result>>(&*item)) {
            bytes -= sizeOf(**result);
            ++dropped;
            ++untold;
            item = items.erase(item);
        } else {
            ++item;
        }
    }
}

void Delivery::deliver() {
    listener->begin();
    for (bool goesOn = true; goesOn;) {
        const auto due = listener->due();
        std::unique_lock<std::mutex> lock(mutex);
        const auto hasItem = [this] { return !items.empty(); };
        if (!due) {
            added.wait(lock, hasItem);
        } else if (!added.wait_until(lock, *due, hasItem)) {
            lock.unlock();
            listener->wake();
            continue;
        }
        Item item = std::move(items.front());
        items.pop_front();
        if (const auto *result = std::get_if<std::shared_ptr<const Result>>(&item)) {
            bytes -= sizeOf(**result);
        }
        const std::uint64_t missing = std::exchange(untold, 0);
        lock.unlock();
        taken.notify_all();
        if (missing > 0) {
            listener->leftOut(missing);
        }
        goesOn = pass(item);
        if (due && *due <= Listener::Clock::now()) {
            listener->wake(); // also for one that never has nothing to do
        }
    }
}

/// @return whether more may come
bool Delivery::pass(const Item &item) {
    if (const auto *result = std::get_if<std::shared_ptr<const Result>>(&item)) {
        listener->result(**result);
    } else if (const auto *message = std::get_if<std::shared_ptr<const Message>>(&item)) {
        listener->message(**message);
    } else if (const auto *status = std::get_if<std::shared_ptr<const Status>>(&item)) {
        listener->status(**status);
    } else if (const auto *function = std::get_if<std::function<void()>>(&item)) {
        (*function)();
    } else {
        const auto &end = std::get<End>(item);
        if (end.status) {
            listener->end(*end.status);
        }
        return false;
    }
    return true;
}

} // namespace monitoring
