#pragma once

#include <cstddef>

namespace support {

/// How often this thread has allocated with new so far.
std::size_t allocationsOfThisThread();

/// What can be made to fail.
enum class Call {
    createCapture,       ///< pcap_create
    activateCapture,     ///< pcap_activate
    compileFilter,       ///< pcap_compile
    setFilter,           ///< pcap_setfilter
    loop,                ///< pcap_loop, as if the adapter had gone
    createThread,        ///< pthread_create, of Qt's threads too
    allocateLarge,       ///< 4 KiB or more with new or malloc, on any thread
    allocateOnThisThread ///< new on the thread that makes the object, but for Qt's own
};

/**
 * Makes the n-th call of one kind fail once, as the system would, from the construction on; one object at a time. The
 * calls go through a seam in the test program, which does nothing without such an object.
 */
class FailingCall {
public:
    FailingCall(Call call, int n);
    ~FailingCall();
    FailingCall(const FailingCall &) = delete;
    FailingCall &operator=(const FailingCall &) = delete;

    /// Whether the n-th call has come, and failed.
    bool hasFailed() const;
};

} // namespace support
