#pragma once

#include <string>

namespace live {

/// One of the program's tables.
class Measurement {
public:
    /// Frames go from the far end to the adapter.
    struct Link {
        std::string adapter;
        std::string farEnd;
    };

    Measurement() = default;
    virtual ~Measurement() = default;
    Measurement(const Measurement &) = delete;
    Measurement &operator=(const Measurement &) = delete;

    virtual int expectedSeconds() const = 0;
    virtual void measure(const Link &link) = 0;
    virtual void print() const = 0;
};

} // namespace live
