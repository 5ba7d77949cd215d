#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

#include "kernels/kernels.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
#else
#define ASAN_POISON_MEMORY_REGION(address, size) static_cast<void>(0)
#define ASAN_UNPOISON_MEMORY_REGION(address, size) static_cast<void>(0)
#endif

namespace support {

/// Room for some values at a chosen distance from a 64-byte boundary, between guards that show any write beside it; in
/// a build with AddressSanitizer any read too.
template <class Element>
class Guarded {
public:
    explicit Guarded(std::size_t length, std::size_t misalignment = 0)
        : length(length), offset(guard + misalignment),
          memory(guard * 2 + misalignment + length * sizeof(Element) + 64),
          base((64 - reinterpret_cast<std::uintptr_t>(memory.data()) % 64) % 64) {
        std::memset(memory.data(), pattern, memory.size());
        ASAN_POISON_MEMORY_REGION(memory.data(), begin());
        ASAN_POISON_MEMORY_REGION(memory.data() + end(), memory.size() - end());
    }

    ~Guarded() { ASAN_UNPOISON_MEMORY_REGION(memory.data(), memory.size()); }

    Guarded(const Guarded &) = delete;
    Guarded &operator=(const Guarded &) = delete;

    Element *get() { return reinterpret_cast<Element *>(memory.data() + base + offset); }
    Element &operator[](std::size_t index) { return get()[index]; }
    std::size_t size() const { return length; }

    void fill(const std::vector<Element> &values) {
        std::memcpy(get(), values.data(), values.size() * sizeof(Element));
    }

    std::vector<Element> values() { return std::vector<Element>(get(), get() + length); }

    /// True as long as nothing beside the values was written.
    bool isIntact() const { return isPattern(0, begin()) && isPattern(end(), memory.size()); }

    /// True as long as the values themselves were not written either.
    bool isUntouched() const { return isPattern(0, memory.size()); }

private:
    std::size_t begin() const { return base + offset; }
    std::size_t end() const { return begin() + length * sizeof(Element); }

#if defined(__SANITIZE_ADDRESS__)
    __attribute__((no_sanitize_address))
#endif
    bool
    isPattern(std::size_t from, std::size_t to) const {
        const unsigned char *const bytes = memory.data();
        for (std::size_t position = from; position < to; ++position) {
            if (bytes[position] != pattern) {
                return false;
            }
        }
        return true;
    }

    static constexpr std::size_t guard = 128;
    static constexpr unsigned char pattern = 0xA5;

    std::size_t length;
    std::size_t offset;
    std::vector<unsigned char> memory;
    std::size_t base;
};

/// Whole pages between two that nobody may touch: a read or write beside them ends the program.
class FencedMemory {
public:
    explicit FencedMemory(std::size_t least)
        : page(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))), bytes((least + page - 1) / page * page),
          memory(mmap(nullptr, bytes + 2 * page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)) {
        if (memory == MAP_FAILED || mprotect(begin(), bytes, PROT_READ | PROT_WRITE) != 0) {
            throw std::runtime_error("there is no memory to be fenced");
        }
    }

    ~FencedMemory() { munmap(memory, bytes + 2 * page); }

    FencedMemory(const FencedMemory &) = delete;
    FencedMemory &operator=(const FencedMemory &) = delete;

    unsigned char *begin() const { return static_cast<unsigned char *>(memory) + page; }
    unsigned char *end() const { return begin() + bytes; }

    /// Room for some bytes that touches one of the fences.
    unsigned char *room(std::size_t amount, bool isAtEnd) const { return isAtEnd ? end() - amount : begin(); }

private:
    std::size_t page;
    std::size_t bytes;
    void *memory;
};

} // namespace support
