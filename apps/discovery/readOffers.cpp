#include "discovery/readOffers.h"

#include <array>
#include <cstddef>

namespace discovery {

namespace {

constexpr unsigned talkerAdvertise = 1;
constexpr unsigned talkerFailed = 2;
constexpr std::size_t advertiseSize = 25;
constexpr std::size_t failedSize = 34;

/// What a value's applicant says, three of them in a byte.
enum class Event { isNew, joinIn, in, joinEmpty, empty, leave };

template <std::size_t size>
void add(std::array<std::uint8_t, size> &number, unsigned amount, std::size_t digits) {
    for (std::size_t i = size; amount > 0 && i-- > size - digits;) {
        amount += number[i];
        number[i] = static_cast<std::uint8_t>(amount);
        amount >>= 8U;
    }
}

Offer readFirst(Bytes value, bool failed) {
    Offer offer;
    offer.id = value.array<8>(0);
    offer.destination = value.array<6>(8);
    offer.vlan = value.word(14) & 0xfffU;
    offer.maxFrameSize = value.word(16);
    offer.maxIntervalFrames = value.word(18);
    offer.priority = value.byte(20) >> 5U;
    if (failed) {
        offer.failureCode = value.byte(33);
    }
    return offer;
}

Event eventOf(Bytes events, unsigned index) {
    constexpr std::array<unsigned, 3> places{36, 6, 1};
    const unsigned three = events.byte(index / 3);
    return three < 216 ? static_cast<Event>(three / places[index % 3] % 6) : Event::empty;
}

void announceAll(Bytes first, Bytes events, unsigned amount, bool failed,
                 const std::function<void(const Announcement &)> &announce) {
    Announcement announcement{readFirst(first, failed)};
    for (unsigned i = 0; i < amount; ++i) {
        const Event event = eventOf(events, i);
        announcement.withdrawn = event == Event::leave;
        // What is only registered is declared by somebody else, who says so too.
        if (event == Event::isNew || event == Event::joinIn || event == Event::joinEmpty || announcement.withdrawn) {
            announce(announcement);
        }
        add(announcement.offer.id, 1, 2); // the talker's count of its streams, not its address
        add(announcement.offer.destination, 1, 6);
    }
}

/// The vectors of a talker's message. @return whether they are in order
bool readVectors(Bytes list, bool failed, const std::function<void(const Announcement &)> &announce) {
    constexpr std::size_t vectorHeader = 2;
    const std::size_t valueSize = failed ? failedSize : advertiseSize;
    while (list.size() >= vectorHeader) {
        const unsigned header = list.word(0);
        if (header == 0) {
            return true; // the end mark
        }
        const unsigned amount = header & 0x1fffU;
        const std::size_t size = vectorHeader + valueSize + (amount + 2) / 3;
        if (list.size() < size) {
            return false;
        }
        announceAll(list.from(vectorHeader), list.from(vectorHeader + valueSize), amount, failed, announce);
        list = list.from(size);
    }
    return false;
}

} // namespace

bool readOffers(Bytes payload, const std::function<void(const Announcement &)> &announce) {
    constexpr std::size_t messageHeader = 4;
    Bytes rest = payload.from(1); // behind the version: later ones only add types of attributes
    while (rest.size() >= messageHeader) {
        const unsigned type = rest.byte(0);
        const std::size_t valueSize = rest.byte(1);
        const std::size_t listSize = rest.word(2);
        if (rest.word(0) == 0) {
            return true;
        }
        const Bytes list = rest.from(messageHeader).first(listSize);
        if (list.size() < listSize) {
            return false;
        }
        if (type == talkerAdvertise || type == talkerFailed) {
            const bool failed = type == talkerFailed;
            if (valueSize != (failed ? failedSize : advertiseSize) || !readVectors(list, failed, announce)) {
                return false;
            }
        }
        rest = rest.from(messageHeader + listSize);
    }
    // A sender may leave the end mark out.
    return payload.size() > 0 && (rest.size() == 0 || (rest.size() >= 2 && rest.word(0) == 0));
}

} // namespace discovery
