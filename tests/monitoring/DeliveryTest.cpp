#include "monitoring/Delivery.h"

#include <atomic>
#include <future>

#include <gtest/gtest.h>

#include "monitoring/results.h"

namespace {

using monitoring::Delivery;
using WhenFull = Delivery::WhenFull;

constexpr std::size_t bound = 100'000;

std::shared_ptr<const monitoring::Result> makeResult(std::uint64_t sequence) {
    auto result = std::make_shared<monitoring::Result>();
    result->sequence = sequence;
    result->y.resize(1000); // a dozen fills the queue
    return result;
}

/// What a listener was told, shared with the test.
struct Heard {
    std::vector<std::uint64_t> results;
    std::uint64_t messages = 0;
    monitoring::LeftOut leftOut;
    int statuses = 0;
    bool ended = false;
    std::promise<void> stalled;
    std::promise<void> release;
};

/// Stalls at its first result until it is released.
class Listener : public monitoring::Listener {
public:
    Listener(std::shared_ptr<Heard> heard, bool stalls) : heard(std::move(heard)), stalls(stalls) {}

    void result(const monitoring::Result &result) override {
        if (std::exchange(stalls, false)) {
            heard->stalled.set_value();
            heard->release.get_future().wait();
        }
        heard->results.push_back(result.sequence);
    }
    void message(const monitoring::Message & /*message*/) override { ++heard->messages; }
    void status(const monitoring::Status & /*status*/) override { ++heard->statuses; }
    void leftOut(const monitoring::LeftOut &amount) override {
        heard->leftOut.results += amount.results;
        heard->leftOut.messages += amount.messages;
        EXPECT_EQ(heard->results.size(), 1U) << "said where they are missing";
    }
    void end(const monitoring::Status & /*status*/) override { heard->ended = true; }

private:
    std::shared_ptr<Heard> heard;
    bool stalls;
};

std::unique_ptr<Delivery> deliver(const std::shared_ptr<Heard> &heard, bool stalls, WhenFull whenFull,
                                  std::function<bool()> givesUp = {}) {
    return std::make_unique<Delivery>(std::make_unique<Listener>(heard, stalls),
                                      Delivery::Terms{bound, whenFull, std::move(givesUp)});
}

TEST(Delivery, leavesTheOldestOutForASlowListenerAndNothingForAnother) {
    const auto slow = std::make_shared<Heard>();
    const auto quick = std::make_shared<Heard>();
    auto slowDelivery = deliver(slow, true, WhenFull::dropOldest);
    auto quickDelivery = deliver(quick, false, WhenFull::wait);
    constexpr std::uint64_t amount = 1000;
    for (std::uint64_t sequence = 0; sequence < amount; ++sequence) {
        slowDelivery->post(makeResult(sequence));
        quickDelivery->post(makeResult(sequence));
        if (sequence == 0) {
            slow->stalled.get_future().wait();
        }
        slowDelivery->post(std::make_shared<const monitoring::Message>());
        slowDelivery->post(std::make_shared<const monitoring::Status>());
    }
    std::atomic<bool> ran{false};
    slowDelivery->run([&] { ran = true; }, std::chrono::milliseconds(1));
    EXPECT_FALSE(ran) << "nobody waits for a stalled one";
    quickDelivery->end(std::make_shared<const monitoring::Status>());
    quickDelivery.reset();
    EXPECT_EQ(quick->results.size(), amount);
    EXPECT_EQ(quick->results.back(), amount - 1);
    EXPECT_TRUE(quick->ended);

    const auto leftOut = slowDelivery->leftOut();
    slow->release.set_value();
    slowDelivery->end(std::make_shared<const monitoring::Status>());
    slowDelivery.reset();
    EXPECT_TRUE(slow->ended);
    EXPECT_TRUE(ran);
    EXPECT_EQ(slow->leftOut.results, leftOut.results);
    EXPECT_EQ(slow->leftOut.messages, leftOut.messages);
    EXPECT_EQ(slow->results.size() + leftOut.results, amount);
    EXPECT_EQ(slow->messages + leftOut.messages, amount);
    EXPECT_LE(slow->messages, 20U) << "they have a bound, too";
    EXPECT_GE(slow->results.size(), 10U);
    EXPECT_LE(slow->results.size(), 1 + bound / 8000);
    EXPECT_EQ(slow->results.back(), amount - 1);
    EXPECT_EQ(slow->statuses, 1) << "the newest one alone";
}

TEST(Delivery, waitsForAListenerThatWantsAllUnlessTheSessionGivesUp) {
    for (const bool givesUp : {false, true}) {
        const auto heard = std::make_shared<Heard>();
        auto delivery = deliver(heard, true, WhenFull::wait, [givesUp] { return givesUp; });
        constexpr std::uint64_t amount = 100;
        delivery->post(makeResult(0));
        heard->stalled.get_future().wait();
        std::atomic<std::uint64_t> posted{1};
        std::thread session([&] {
            for (std::uint64_t sequence = 1; sequence < amount; ++sequence, ++posted) {
                delivery->post(makeResult(sequence));
            }
        });
        if (givesUp) {
            session.join();
            EXPECT_GT(delivery->leftOut().results, 0U);
        }
        EXPECT_LE(givesUp ? 0U : posted.load(), 1 + bound / 8000);
        heard->release.set_value();
        if (!givesUp) {
            session.join();
            EXPECT_EQ(delivery->leftOut().results, 0U);
        }
        std::atomic<bool> ran{false};
        delivery->run([&] { ran = true; }, std::chrono::seconds(20));
        EXPECT_TRUE(ran) << "behind all that was on its way";
        delivery.reset();
        EXPECT_EQ(heard->results.size() + heard->leftOut.results, amount);
    }
}

TEST(Delivery, endsWithAReasonForAListenerThatThrows) {
    class Thrower : public monitoring::Listener {
    public:
        explicit Thrower(int &calls) : calls(calls) {}
        void result(const monitoring::Result & /*result*/) override {
            ++calls;
            throw std::runtime_error("no room");
        }

    private:
        int &calls;
    };
    int calls = 0;
    std::promise<void> failed;
    std::promise<void> ended;
    Delivery delivery(std::make_unique<Thrower>(calls),
                      Delivery::Terms{bound, WhenFull::wait, {}, [&] { failed.set_value(); }});
    for (std::uint64_t sequence = 0; sequence < 100; ++sequence) {
        delivery.post(makeResult(sequence)); // none waits for one that hears no more
    }
    delivery.end(std::make_shared<const monitoring::Status>(), [&] { ended.set_value(); });
    ended.get_future().wait();
    EXPECT_EQ(failed.get_future().wait_for(std::chrono::seconds(0)), std::future_status::ready);
    EXPECT_EQ(delivery.failure(), "no room");
    EXPECT_EQ(calls, 1);
}

/// Wants to be woken again and again, also while much comes.
class Sleeper : public monitoring::Listener {
public:
    explicit Sleeper(std::atomic<int> &wakes) : wakes(wakes) {}

    void result(const monitoring::Result & /*result*/) override {}
    std::optional<Clock::time_point> due() const override { return next; }
    void wake() override {
        ++wakes;
        next += std::chrono::milliseconds(1);
    }

private:
    std::atomic<int> &wakes;
    Clock::time_point next = Clock::now();
};

TEST(Delivery, wakesItsListenerWhenItIsDue) {
    for (const bool busy : {false, true}) {
        std::atomic<int> wakes{0};
        Delivery delivery(std::make_unique<Sleeper>(wakes), Delivery::Terms{bound});
        const auto patience = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (wakes < 20 && std::chrono::steady_clock::now() < patience) {
            if (busy) {
                delivery.post(makeResult(0));
            } else {
                std::this_thread::yield();
            }
        }
        EXPECT_GE(wakes, 20);
    }
}

} // namespace
