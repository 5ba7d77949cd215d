#include "avb/StreamIndex.h"

namespace avb {

StreamIndex::StreamIndex(const std::vector<Entry> &added) : entries(added.size()) {
    std::size_t places = 2;
    while (places < 2 * added.size()) {
        places *= 2;
        --shift;
    }
    firstOfPlace.assign(places + 1, 0);
    for (const Entry &entry : added) {
        ++firstOfPlace[placeOf(entry.identity) + 1];
    }
    for (std::size_t place = 0; place < places; ++place) {
        firstOfPlace[place + 1] += firstOfPlace[place];
    }
    std::vector<std::uint32_t> next = firstOfPlace;
    for (const Entry &entry : added) {
        entries[next[placeOf(entry.identity)]++] = entry;
    }
}

} // namespace avb
