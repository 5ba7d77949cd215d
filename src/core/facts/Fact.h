#pragma once

#include <atomic>

namespace facts {

/// A number that one thread at a time writes and any thread reads. Writing needs no locked instruction.
template <class Number>
class Fact {
public:
    explicit Fact(Number start = 0) : value(start) {}

    Number get() const { return value.load(std::memory_order_acquire); }
    void set(Number number) { value.store(number, std::memory_order_release); }
    void add(Number amount) { set(get() + amount); }

private:
    std::atomic<Number> value;
};

} // namespace facts
