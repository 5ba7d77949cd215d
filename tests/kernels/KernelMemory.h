#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <vector>

#include "kernels/kernels.h"

namespace support {

/// Room for some values at a chosen distance from a 64-byte boundary, between guards that show any write beside it.
template <class Element>
class Guarded {
public:
    explicit Guarded(std::size_t length, std::size_t misalignment = 0)
        : length(length), offset(guard + misalignment),
          memory(guard * 2 + misalignment + length * sizeof(Element) + 64),
          base((64 - reinterpret_cast<std::uintptr_t>(memory.data()) % 64) % 64) {
        std::memset(memory.data(), pattern, memory.size());
    }

    Element *get() { return reinterpret_cast<Element *>(memory.data() + base + offset); }
    Element &operator[](std::size_t index) { return get()[index]; }
    std::size_t size() const { return length; }

    void fill(const std::vector<Element> &values) {
        std::memcpy(get(), values.data(), values.size() * sizeof(Element));
    }

    std::vector<Element> values() { return std::vector<Element>(get(), get() + length); }

    /// True as long as nothing beside the values was written.
    bool isIntact() const {
        const std::size_t begin = base + offset;
        const std::size_t end = begin + length * sizeof(Element);
        for (std::size_t position = 0; position < memory.size(); ++position) {
            if ((position < begin || position >= end) && memory[position] != pattern) {
                return false;
            }
        }
        return true;
    }

    /// True as long as the values themselves were not written either.
    bool isUntouched() const {
        for (const unsigned char byte : memory) {
            if (byte != pattern) {
                return false;
            }
        }
        return true;
    }

private:
    static constexpr std::size_t guard = 128;
    static constexpr unsigned char pattern = 0xA5;

    std::size_t length;
    std::size_t offset;
    std::vector<unsigned char> memory;
    std::size_t base;
};

} // namespace support
