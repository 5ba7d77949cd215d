#pragma once

namespace support {

/// While one lives, no memory is refused to its thread (see FailingCall): for what a test does of its own meanwhile.
class SparedMemory {
public:
    SparedMemory() { ++nesting; }
    ~SparedMemory() { --nesting; }
    SparedMemory(const SparedMemory &) = delete;
    SparedMemory &operator=(const SparedMemory &) = delete;

    /// Whether this thread has one.
    static bool isActive() { return nesting > 0; }

private:
    static inline thread_local int nesting = 0;
};

} // namespace support
