#pragma once

#include <atomic>
#include <cstddef>
#include <vector>

namespace avb {

/**
 * The cells of a ring of samples, which one thread writes and any read meanwhile. Who reads a sample of a write has all
 * that the writer did before that write.
 *
 * Samples lie in pairs, since a processor stores two as fast as one.
 */
class SampleRing {
public:
    /// All cells are 0.0.
    explicit SampleRing(std::size_t size);

    std::size_t size() const { return cellAmount; }

    /// Writes to the cells from @p position on; not beyond the last one. By the writer alone.
    void write(std::size_t position, const float *values, std::size_t amount) {
        std::atomic<Pair> *pair = pairs + position / 2;
        const float *const end = values + amount;
        if (position % 2 != 0 && values != end) {
            store(*pair, {pair->load(std::memory_order_relaxed).first, values[0]});
            ++pair;
            ++values;
        }
        const std::size_t whole = static_cast<std::size_t>(end - values) / 2;
        for (std::size_t i = 0; i < whole; ++i) {
            store(pair[i], {values[2 * i], values[2 * i + 1]});
        }
        if (values + 2 * whole != end) {
            store(pair[whole], {values[2 * whole], pair[whole].load(std::memory_order_relaxed).second});
        }
    }

    /// Reads the cells from @p position on; not beyond the last one.
    void read(std::size_t position, float *values, std::size_t amount) const {
        const std::atomic<Pair> *pair = pairs + position / 2;
        float *const end = values + amount;
        if (position % 2 != 0 && values != end) {
            *values++ = load(*pair++).second;
        }
        for (; end - values >= 2; values += 2) {
            const Pair both = load(*pair++);
            values[0] = both.first;
            values[1] = both.second;
        }
        if (values != end) {
            *values = load(*pair).first;
        }
    }

    /// Tells the CPU that the cells from @p position on are written next: the rings of many channels are more than what
    /// it fetches ahead by itself. A position behind the last cell does no harm.
    void expectWrite(std::size_t position, std::size_t amount) const {
        constexpr int forWriting = 1;
        const char *const first = reinterpret_cast<const char *>(pairs) + position * sizeof(float);
        for (std::size_t byte = 0; byte < amount * sizeof(float); byte += lineBytes) {
            __builtin_prefetch(first + byte, forWriting);
        }
    }

private:
    struct alignas(8) Pair {
        float first;
        float second;
    };
    static_assert(std::atomic<Pair>::is_always_lock_free);

    static constexpr std::size_t lineBytes = 64; ///< of the CPU's caches

    static void store(std::atomic<Pair> &pair, Pair value) { pair.store(value, std::memory_order_release); }
    static Pair load(const std::atomic<Pair> &pair) { return pair.load(std::memory_order_acquire); }

    std::vector<std::atomic<Pair>> memory;
    std::atomic<Pair> *pairs; ///< somewhere in the memory
    std::size_t cellAmount;
};

} // namespace avb
