#include "talker/signals/NoiseSignal.h"

namespace talker {

std::int16_t NoiseSignal::code(std::uint64_t sample, unsigned channel) const {
    // SplitMix64 turns neighbouring seeds into unrelated numbers.
    std::uint64_t bits = (sample * 1024 + channel + 1) * 0x9e3779b97f4a7c15U;
    bits = (bits ^ (bits >> 30)) * 0xbf58476d1ce4e5b9U;
    bits = (bits ^ (bits >> 27)) * 0x94d049bb133111ebU;
    bits ^= bits >> 31;
    const double unit = static_cast<double>(bits >> 11) / 9007199254740992.0; // 53 bits over 2^53
    return toCode(amplitude * (2.0 * unit - 1.0));
}

} // namespace talker
