#include "monitoring/Delivery.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace monitoring {

namespace {

using ResultItem = std::shared_ptr<const Result>;
using MessageItem = std::shared_ptr<const Message>;
using StatusItem = std::shared_ptr<const Status>;
using FunctionItem = std::function<void()>;

/// What counts against the bound; 0 for what there is little of.
template <class Item>
std::size_t sizeOf(const Item &item) {
    if (const auto *result = std::get_if<ResultItem>(&item)) {
        return sizeof(Result) + ((*result)->x.capacity() + (*result)->y.capacity()) * sizeof(double);
    }
    if (const auto *message = std::get_if<MessageItem>(&item)) {
        const Message &texts = **message;
        return sizeof texts + texts.name.size() + texts.id.size() + texts.type.size() + texts.details.size() +
               (texts.text ? texts.text->size() : 0);
    }
    return 0;
}

} // namespace

Delivery::Delivery(std::unique_ptr<Listener> listener, Terms terms)
    : listener(std::move(listener)), terms(std::move(terms)), thread([this] { deliver(); }) {}

Delivery::~Delivery() {
    end(nullptr);
    thread.join();
}

void Delivery::post(std::shared_ptr<const Result> result) {
    add(std::move(result));
}

void Delivery::post(std::shared_ptr<const Message> message) {
    add(std::move(message));
}

void Delivery::post(std::shared_ptr<const Status> status) {
    {
        const std::lock_guard<std::mutex> lock(mutex);
        const auto unheard = std::find_if(items.begin(), items.end(),
                                          [](const Item &item) { return std::holds_alternative<StatusItem>(item); });
        if (unheard != items.end()) {
            *unheard = std::move(status);
            return;
        }
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

void Delivery::end(std::shared_ptr<const Status> status, std::function<void()> done) {
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (std::exchange(ended, true)) {
            return;
        }
    }
    add(End{std::move(status), std::move(done)});
}

LeftOut Delivery::leftOut() const {
    const std::lock_guard<std::mutex> lock(mutex);
    return dropped;
}

std::string Delivery::failure() const {
    const std::lock_guard<std::mutex> lock(mutex);
    return reason;
}

void Delivery::add(Item item) {
    {
        std::unique_lock<std::mutex> lock(mutex);
        if (const std::size_t size = sizeOf(item); size > 0) {
            makeRoom(lock, size);
            bytes += size;
        }
        items.push_back(std::move(item));
    }
    added.notify_one();
}

/// A single result always has room, however large it is.
void Delivery::makeRoom(std::unique_lock<std::mutex> &lock, std::size_t size) {
    if (terms.whenFull == WhenFull::wait) {
        constexpr std::chrono::milliseconds slice(50);
        while (isFull(size) && !(terms.givesUp && terms.givesUp())) {
            taken.wait_for(lock, slice);
        }
    }
    for (auto item = items.begin(); isFull(size) && item != items.end();) {
        const std::size_t gone = sizeOf(*item);
        if (gone == 0) {
            ++item;
            continue;
        }
        const auto amount = std::holds_alternative<ResultItem>(*item) ? &LeftOut::results : &LeftOut::messages;
        ++(dropped.*amount);
        ++(untold.*amount);
        bytes -= gone;
        item = items.erase(item);
    }
}

void Delivery::deliver() {
    tell([](Listener &told) { told.begin(); });
    for (bool goesOn = true; goesOn;) {
        std::optional<Listener::Clock::time_point> due;
        tell([&](const Listener &asked) { due = asked.due(); });
        std::unique_lock<std::mutex> lock(mutex);
        const auto hasItem = [this] { return !items.empty(); };
        if (!due) {
            added.wait(lock, hasItem);
        } else if (!added.wait_until(lock, *due, hasItem)) {
            lock.unlock();
            tell([](Listener &told) { told.wake(); });
            continue;
        }
        const Item item = std::move(items.front());
        items.pop_front();
        bytes -= sizeOf(item);
        const LeftOut missing = std::exchange(untold, {});
        lock.unlock();
        taken.notify_all();
        if (missing.results + missing.messages > 0) {
            tell([&](Listener &told) { told.leftOut(missing); });
        }
        goesOn = pass(item);
        if (goesOn) {
            tell([](Listener &told) { // also one that never has nothing to do
                if (const auto next = told.due(); next && *next <= Listener::Clock::now()) {
                    told.wake();
                }
            });
        }
    }
}

/// @return whether more may come
bool Delivery::pass(const Item &item) {
    if (const auto *end = std::get_if<End>(&item)) {
        if (end->status) {
            tell([&](Listener &told) { told.end(*end->status); });
        }
        if (end->done) {
            end->done();
        }
        return false;
    }
    if (const auto *function = std::get_if<FunctionItem>(&item)) {
        guard([&](Listener & /*listener*/) { (*function)(); });
        return true;
    }
    tell([&](Listener &told) {
        if (const auto *result = std::get_if<ResultItem>(&item)) {
            told.result(**result);
        } else if (const auto *message = std::get_if<MessageItem>(&item)) {
            told.message(**message);
        } else {
            told.status(*std::get<StatusItem>(item));
        }
    });
    return true;
}

template <class Function>
void Delivery::tell(const Function &function) {
    if (hears) {
        guard(function);
    }
}

template <class Function>
void Delivery::guard(const Function &function) {
    try {
        function(*listener);
    } catch (const std::exception &error) {
        hears = false;
        {
            const std::lock_guard<std::mutex> lock(mutex);
            reason = error.what();
        }
        if (terms.failed) {
            terms.failed();
        }
    }
}

} // namespace monitoring
