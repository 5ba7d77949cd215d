#include "support/FailingCall.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>

#include <dlfcn.h>
#include <pcap/pcap.h>
#include <pthread.h>

#include "support/SparedMemory.h"
#include "support/ThreadSanitizer.h"

// The functions that this program takes over. Those of libpcap and malloc are what the library's objects call here (the
// linker's --wrap); pthread_create and new stand before everybody's.

extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
pcap_t *__real_pcap_create(const char *source, char *error);
int __real_pcap_activate(pcap_t *handle);
int __real_pcap_compile(pcap_t *handle, bpf_program *program, const char *text, int optimise, bpf_u_int32 netmask);
int __real_pcap_setfilter(pcap_t *handle, bpf_program *program);
int __real_pcap_loop(pcap_t *handle, int count, pcap_handler handler, u_char *user);
void *__real_malloc(std::size_t size);
// NOLINTEND(bugprone-reserved-identifier)
}

namespace {

constexpr std::size_t large = 4096;

std::atomic<int> armed{-1}; ///< the kind of call, or -1
std::atomic<int> remaining{0};
std::atomic<bool> failed{false};
thread_local bool isHostThread = false;
thread_local std::size_t allocations = 0;

/// Counts a call of the kind. @return whether it is the one to fail
bool isTheOne(support::Call call) {
    if (armed.load(std::memory_order_relaxed) != static_cast<int>(call) || --remaining != 0) {
        return false;
    }
    failed = true;
    return true;
}

bool isQt(const void *caller) {
    Dl_info info{};
    return dladdr(caller, &info) != 0 && info.dli_fname != nullptr && std::strstr(info.dli_fname, "libQt5") != nullptr;
}

bool isMemoryRefused(std::size_t size, const void *caller) {
    if (armed.load(std::memory_order_relaxed) < 0 || support::SparedMemory::isActive()) {
        return false;
    }
    return (size >= large && isTheOne(support::Call::allocateLarge)) ||
           (isHostThread && !isQt(caller) && isTheOne(support::Call::allocateOnThisThread));
}

} // namespace

extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier)
pcap_t *__wrap_pcap_create(const char *source, char *error) {
    if (isTheOne(support::Call::createCapture)) {
        std::strcpy(error, "planted");
        return nullptr;
    }
    return __real_pcap_create(source, error);
}

int __wrap_pcap_activate(pcap_t *handle) {
    return isTheOne(support::Call::activateCapture) ? PCAP_ERROR_IFACE_NOT_UP : __real_pcap_activate(handle);
}

int __wrap_pcap_compile(pcap_t *handle, bpf_program *program, const char *text, int optimise, bpf_u_int32 netmask) {
    return isTheOne(support::Call::compileFilter) ? PCAP_ERROR
                                                  : __real_pcap_compile(handle, program, text, optimise, netmask);
}

int __wrap_pcap_setfilter(pcap_t *handle, bpf_program *program) {
    return isTheOne(support::Call::setFilter) ? PCAP_ERROR : __real_pcap_setfilter(handle, program);
}

int __wrap_pcap_loop(pcap_t *handle, int count, pcap_handler handler, u_char *user) {
    return isTheOne(support::Call::loop) ? PCAP_ERROR : __real_pcap_loop(handle, count, handler, user);
}

void *__wrap_malloc(std::size_t size) {
    return isMemoryRefused(size, __builtin_return_address(0)) ? nullptr : __real_malloc(size);
}
// NOLINTEND(bugprone-reserved-identifier)

[[gnu::visibility("default")]] int pthread_create(pthread_t *thread, const pthread_attr_t *attributes,
                                                  void *(*start)(void *), void *argument) {
    static const auto next = reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
    return isTheOne(support::Call::createThread) ? EAGAIN : next(thread, attributes, start, argument);
}
}

[[gnu::visibility("default")]] void *operator new(std::size_t size) {
    ++allocations;
    if (!isMemoryRefused(size, __builtin_return_address(0))) {
        if (void *memory = __real_malloc(size == 0 ? 1 : size)) {
            support::releaseQtsBlock(memory, __builtin_return_address(0));
            return memory;
        }
    }
    throw std::bad_alloc();
}

[[gnu::visibility("default")]] void operator delete(void *memory) noexcept {
    support::acquireQtsBlock(memory, __builtin_return_address(0));
    std::free(memory);
}
[[gnu::visibility("default")]] void operator delete(void *memory, std::size_t /*size*/) noexcept {
    support::acquireQtsBlock(memory, __builtin_return_address(0));
    std::free(memory);
}

namespace support {

std::size_t allocationsOfThisThread() {
    return allocations;
}

FailingCall::FailingCall(Call call, int n) {
    isHostThread = true;
    failed = false;
    remaining = n;
    armed = static_cast<int>(call);
}

FailingCall::~FailingCall() {
    armed = -1;
    isHostThread = false;
}

bool FailingCall::hasFailed() const {
    return failed;
}

} // namespace support
