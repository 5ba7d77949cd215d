#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace avb {

struct AvtpStream;

/**
 * Finds the streams that a frame may belong to by what tells them apart, in the same time for one stream and for a
 * thousand. Streams of one identity come in the order of their addition.
 */
class StreamIndex {
public:
    struct Entry {
        std::uint64_t identity;
        const AvtpStream *stream;
    };
    /// For a loop: the few entries that share a place, among them all of the identity.
    class Candidates {
    public:
        Candidates(const Entry *first, const Entry *last) : first(first), last(last) {}
        const Entry *begin() const { return first; }
        const Entry *end() const { return last; }

    private:
        const Entry *first;
        const Entry *last;
    };

    StreamIndex() : StreamIndex(std::vector<Entry>()) {}
    explicit StreamIndex(const std::vector<Entry> &added);

    bool isEmpty() const { return entries.empty(); }
    Candidates candidates(std::uint64_t identity) const {
        const std::uint32_t *const place = firstOfPlace.data() + placeOf(identity);
        return {entries.data() + place[0], entries.data() + place[1]};
    }

private:
    /// By the golden ratio: addresses that count up spread evenly.
    std::size_t placeOf(std::uint64_t identity) const { return identity * 0x9E3779B97F4A7C15U >> shift; }

    unsigned shift = 63;
    std::vector<std::uint32_t> firstOfPlace; ///< where its entries begin; those of the next place end them
    std::vector<Entry> entries;              ///< by place
};

} // namespace avb
