#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace common {

/// A format of samples in AVTP audio frames, by the names that the programs use. All are big-endian.
struct AafFormat {
    std::string_view name;
    std::uint8_t code; ///< in the frame
    unsigned bytes;    ///< of a sample
};

inline constexpr std::array<AafFormat, 4> aafFormats{
    {{"int16", 4, 2}, {"int24", 3, 3}, {"int32", 2, 4}, {"float32", 1, 4}}};

/// A nominal sample rate in AVTP audio frames; code 0 leaves it to the user.
struct AafRate {
    std::uint8_t code; ///< the upper four bits of its byte in the frame
    unsigned hertz;
};

inline constexpr std::array<AafRate, 10> aafRates{{{1, 8000},
                                                   {2, 16000},
                                                   {3, 32000},
                                                   {4, 44100},
                                                   {5, 48000},
                                                   {6, 88200},
                                                   {7, 96000},
                                                   {8, 176400},
                                                   {9, 192000},
                                                   {10, 24000}}};

/// The one of a list whose member has this value; null if there is none. find(aafFormats, &AafFormat::name, "int16")
template <class Entries, class Member, class Value>
constexpr const typename Entries::value_type *find(const Entries &entries, Member member, const Value &value) {
    for (const auto &entry : entries) {
        if (entry.*member == value) {
            return &entry;
        }
    }
    return nullptr;
}

} // namespace common
