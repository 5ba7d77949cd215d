#include "avb/SampleRing.h"

namespace avb {

namespace {

constexpr std::size_t linesOfPage = 64;
constexpr std::size_t pairsOfLine = 8;

/// Large blocks of memory begin at the same place of a page each. Rings that did, too, would drive each other out of
/// the CPU's caches, since all channels of a stream write at the same place of their ring.
std::size_t nextLine() {
    static std::atomic<std::size_t> rings{0};
    return rings++ % linesOfPage;
}

} // namespace

SampleRing::SampleRing(std::size_t size)
    : memory(size / 2 + 1 + linesOfPage * pairsOfLine), pairs(memory.data() + nextLine() * pairsOfLine),
      cellAmount(size) {
    for (std::atomic<Pair> &pair : memory) {
        pair.store({0.0F, 0.0F}, std::memory_order_relaxed);
    }
}

} // namespace avb
