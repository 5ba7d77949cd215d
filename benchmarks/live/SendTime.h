#pragma once

#include <cstdint>
#include <ctime>

namespace live {

/// The time at which a frame was sent, which travels in the first four 16-bit samples of its first channel.
class SendTime {
public:
    static constexpr unsigned samples = 4;

    /// Nanoseconds of CLOCK_MONOTONIC.
    static std::int64_t now() {
        timespec time = {};
        clock_gettime(CLOCK_MONOTONIC, &time);
        return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
    }

    /// @param codeOf gives the code of a sample, in 16 bits
    template <class CodeOf>
    static std::int64_t read(CodeOf codeOf) {
        std::uint64_t time = 0;
        for (unsigned sample = 0; sample < samples; ++sample) {
            time = time << 16 | static_cast<std::uint16_t>(codeOf(sample));
        }
        return static_cast<std::int64_t>(time);
    }

    /// @param write takes a sample and its code
    template <class Write>
    static void write(std::int64_t time, Write write) {
        for (unsigned sample = samples; sample-- > 0; time >>= 16) {
            write(sample, static_cast<std::uint16_t>(time));
        }
    }
};

} // namespace live
