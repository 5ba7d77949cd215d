#pragma once

#include <stdint.h>

#ifdef __SSSE3__
#include <immintrin.h>
#endif

#include "kernels/Types.h"
#include "kernels/loops/Vector.h"

/**
 * @file
 * Big-endian samples as codes of 32 bits: those of 16 and 24 bits stand in the high ones, above zeros, so that full
 * scale is the same for all. One, 4 or 8 neighbours are read at a time, and no byte beside them.
 */

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the bytes of samples are turned round");

namespace kernels::KERNEL_LEVEL {
namespace {

using Codes4 = uint32_t __attribute__((vector_size(16)));
#ifdef __AVX2__
using Codes8 = uint32_t __attribute__((vector_size(32)));
#endif

SONVEX_INLINE float toNumbers(uint32_t code) {
    return static_cast<float>(static_cast<int32_t>(code));
}

SONVEX_INLINE Quads toNumbers(Codes4 codes) {
    using Signed = int32_t __attribute__((vector_size(16)));
    return __builtin_convertvector(reinterpret_cast<Signed>(codes), Quads);
}

SONVEX_INLINE float asFloats(uint32_t code) {
    float value = 0;
    __builtin_memcpy(&value, &code, sizeof value);
    return value;
}

SONVEX_INLINE Quads asFloats(Codes4 codes) {
    return reinterpret_cast<Quads>(codes);
}

/// All bits of those codes which are infinities as floats, or not a number.
SONVEX_INLINE uint32_t maskOfInvalid(uint32_t code) {
    return (code & 0x7F800000U) == 0x7F800000U ? ~0U : 0U;
}

SONVEX_INLINE Codes4 maskOfInvalid(Codes4 codes) {
    return reinterpret_cast<Codes4>((codes & 0x7F800000U) == 0x7F800000U);
}

SONVEX_INLINE bool isAnySet(uint32_t code) {
    return code != 0;
}

SONVEX_INLINE bool isAnySet(Codes4 codes) {
    using Halves = uint64_t __attribute__((vector_size(16)));
    const auto halves = reinterpret_cast<Halves>(codes);
    return (halves[0] | halves[1]) != 0;
}

#ifdef __AVX2__

SONVEX_INLINE Floats toNumbers(Codes8 codes) {
    return _mm256_cvtepi32_ps(reinterpret_cast<__m256i>(codes));
}

SONVEX_INLINE Floats asFloats(Codes8 codes) {
    return reinterpret_cast<Floats>(codes);
}

SONVEX_INLINE Codes8 maskOfInvalid(Codes8 codes) {
    return reinterpret_cast<Codes8>((codes & 0x7F800000U) == 0x7F800000U);
}

SONVEX_INLINE bool isAnySet(Codes8 codes) {
    return _mm256_testz_si256(reinterpret_cast<__m256i>(codes), reinterpret_cast<__m256i>(codes)) == 0;
}

#endif

template <class Value>
SONVEX_INLINE Value read(const Ipp8u *from) {
    Value value;
    __builtin_memcpy(&value, from, sizeof value);
    return value;
}

#ifdef __SSSE3__
/// The bytes of the given places in their new order; 0 for a place of -1.
SONVEX_INLINE Codes4 pick(__m128i bytes, __m128i places) {
    return reinterpret_cast<Codes4>(_mm_shuffle_epi8(bytes, places));
}
#endif

#ifdef __AVX2__
/// As pick for 4 codes, in each half of its own.
SONVEX_INLINE Codes8 pick(__m256i bytes, __m256i places) {
    return reinterpret_cast<Codes8>(_mm256_shuffle_epi8(bytes, places));
}
#endif

/// The reading of samples of some bytes. The vectors are results by reference, as their type tells how many are read.
template <int bytes>
struct Samples;

template <>
struct Samples<2> {
    SONVEX_INLINE void get(const Ipp8u *from, uint32_t &code) {
        code = uint32_t{__builtin_bswap16(read<uint16_t>(from))} << 16;
    }

    SONVEX_INLINE void get(const Ipp8u *from, Codes4 &codes) {
#ifdef __SSSE3__
        codes = pick(_mm_loadl_epi64(reinterpret_cast<const __m128i *>(from)),
                     _mm_setr_epi8(-1, -1, 1, 0, -1, -1, 3, 2, -1, -1, 5, 4, -1, -1, 7, 6));
#else
        using Raw = uint16_t __attribute__((vector_size(8)));
        const Codes4 raw = __builtin_convertvector(read<Raw>(from), Codes4);
        codes = raw << 24 | (raw << 8 & 0xFF0000U);
#endif
    }

#ifdef __AVX2__
    SONVEX_INLINE void get(const Ipp8u *from, Codes8 &codes) {
        codes = pick(_mm256_broadcastsi128_si256(read<__m128i>(from)),
                     _mm256_setr_epi8(-1, -1, 1, 0, -1, -1, 3, 2, -1, -1, 5, 4, -1, -1, 7, 6, //
                                      -1, -1, 9, 8, -1, -1, 11, 10, -1, -1, 13, 12, -1, -1, 15, 14));
    }
#endif
};

template <>
struct Samples<3> {
    SONVEX_INLINE void get(const Ipp8u *from, uint32_t &code) {
        code = uint32_t{__builtin_bswap16(read<uint16_t>(from))} << 16 | uint32_t{from[2]} << 8;
    }

    SONVEX_INLINE void get(const Ipp8u *from, Codes4 &codes) {
#ifdef __SSSE3__
        codes = pick(_mm_set_epi64x(read<int64_t>(from + 4), read<int64_t>(from)),
                     _mm_setr_epi8(-1, 2, 1, 0, -1, 5, 4, 3, -1, 12, 7, 6, -1, 15, 14, 13));
#else
        const Codes4 raw = {__builtin_bswap32(read<uint32_t>(from)), __builtin_bswap32(read<uint32_t>(from + 3)),
                            __builtin_bswap32(read<uint32_t>(from + 6)),
                            __builtin_bswap32(read<uint32_t>(from + 8)) << 8}; // the last 4 bytes: a fifth is not ours
        codes = raw & 0xFFFFFF00U;
#endif
    }

#ifdef __AVX2__
    SONVEX_INLINE void get(const Ipp8u *from, Codes8 &codes) {
        codes = pick(_mm256_set_m128i(read<__m128i>(from + 8), read<__m128i>(from)),
                     _mm256_setr_epi8(-1, 2, 1, 0, -1, 5, 4, 3, -1, 8, 7, 6, -1, 11, 10, 9, //
                                      -1, 6, 5, 4, -1, 9, 8, 7, -1, 12, 11, 10, -1, 15, 14, 13));
    }
#endif
};

template <>
struct Samples<4> {
    SONVEX_INLINE void get(const Ipp8u *from, uint32_t &code) { code = __builtin_bswap32(read<uint32_t>(from)); }

    SONVEX_INLINE void get(const Ipp8u *from, Codes4 &codes) {
#ifdef __SSSE3__
        codes = pick(read<__m128i>(from), _mm_setr_epi8(3, 2, 1, 0, 7, 6, 5, 4, 11, 10, 9, 8, 15, 14, 13, 12));
#else
        using Halves = uint16_t __attribute__((vector_size(16)));
        const auto halves = read<Halves>(from);
        const auto turned = reinterpret_cast<Codes4>(halves << 8 | halves >> 8);
        codes = turned << 16 | turned >> 16;
#endif
    }

#ifdef __AVX2__
    SONVEX_INLINE void get(const Ipp8u *from, Codes8 &codes) {
        codes = pick(read<__m256i>(from), _mm256_setr_epi8(3, 2, 1, 0, 7, 6, 5, 4, 11, 10, 9, 8, 15, 14, 13, 12, //
                                                           3, 2, 1, 0, 7, 6, 5, 4, 11, 10, 9, 8, 15, 14, 13, 12));
    }
#endif
};

} // namespace
} // namespace kernels::KERNEL_LEVEL
