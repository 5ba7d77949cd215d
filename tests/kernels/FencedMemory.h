#pragma once

#include <algorithm>
#include <cstddef>
#include <stdexcept>

#include <sys/mman.h>
#include <unistd.h>

namespace support {

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
