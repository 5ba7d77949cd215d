#pragma once

/**
 * @file
 * The vectors of the level that this file is compiled for: Floats and Doubles of 16 or 32 bytes, with the compiler's
 * arithmetic and what the kernels need beyond it. Loads and stores take any alignment.
 */

#ifdef __AVX__
#include <immintrin.h>
#endif

#define SONVEX_VECTOR_BYTES KERNEL_VECTOR_BYTES // the build knows it from the list of levels
#define SONVEX_INLINE static inline __attribute__((always_inline))

namespace kernels::KERNEL_LEVEL {

constexpr int floatLanes = SONVEX_VECTOR_BYTES / 4;
constexpr int doubleLanes = SONVEX_VECTOR_BYTES / 8;

using Floats = float __attribute__((vector_size(SONVEX_VECTOR_BYTES)));
using Doubles = double __attribute__((vector_size(SONVEX_VECTOR_BYTES)));
using Quads = float __attribute__((vector_size(16))); ///< of every level, the Floats of some

SONVEX_INLINE Floats load(const float *from) {
    Floats value;
    __builtin_memcpy(&value, from, sizeof value);
    return value;
}

SONVEX_INLINE Doubles load(const double *from) {
    Doubles value;
    __builtin_memcpy(&value, from, sizeof value);
    return value;
}

SONVEX_INLINE void store(float *to, Floats value) {
    __builtin_memcpy(to, &value, sizeof value);
}

SONVEX_INLINE void store(double *to, Doubles value) {
    __builtin_memcpy(to, &value, sizeof value);
}

/// doubleLanes floats, exact as doubles.
SONVEX_INLINE Doubles loadWidened(const float *from) {
#ifdef __AVX__
    return _mm256_cvtps_pd(_mm_loadu_ps(from)); // the compiler's own conversion goes by halves
#else
    float __attribute__((vector_size(SONVEX_VECTOR_BYTES / 2))) value;
    __builtin_memcpy(&value, from, sizeof value);
    return __builtin_convertvector(value, Doubles);
#endif
}

/// All floats of a vector, exact as doubles.
SONVEX_INLINE void storeWidened(double *to, Floats value) {
#ifdef __AVX__
    store(to, _mm256_cvtps_pd(_mm256_castps256_ps128(value)));
    store(to + doubleLanes, _mm256_cvtps_pd(_mm256_extractf128_ps(value, 1)));
#else
    double __attribute__((vector_size(2 * SONVEX_VECTOR_BYTES))) wide =
        __builtin_convertvector(value, double __attribute__((vector_size(2 * SONVEX_VECTOR_BYTES))));
    __builtin_memcpy(to, &wide, sizeof wide);
#endif
}

SONVEX_INLINE Floats broadcast(float value) {
    return value - Floats{};
}

SONVEX_INLINE Doubles broadcast(double value) {
    return value - Doubles{};
}

/// Exchanges rows and lanes of 4 vectors.
SONVEX_INLINE void transposeFours(Quads &a, Quads &b, Quads &c, Quads &d) {
    const Quads frontAB = __builtin_shufflevector(a, b, 0, 4, 1, 5);
    const Quads backAB = __builtin_shufflevector(a, b, 2, 6, 3, 7);
    const Quads frontCD = __builtin_shufflevector(c, d, 0, 4, 1, 5);
    const Quads backCD = __builtin_shufflevector(c, d, 2, 6, 3, 7);
    a = __builtin_shufflevector(frontAB, frontCD, 0, 1, 4, 5);
    b = __builtin_shufflevector(frontAB, frontCD, 2, 3, 6, 7);
    c = __builtin_shufflevector(backAB, backCD, 0, 1, 4, 5);
    d = __builtin_shufflevector(backAB, backCD, 2, 3, 6, 7);
}

#if SONVEX_VECTOR_BYTES == 32

/// As with Quads, in each half of its own.
SONVEX_INLINE void transposeFours(Floats &a, Floats &b, Floats &c, Floats &d) {
    const Floats frontAB = __builtin_shufflevector(a, b, 0, 8, 1, 9, 4, 12, 5, 13);
    const Floats backAB = __builtin_shufflevector(a, b, 2, 10, 3, 11, 6, 14, 7, 15);
    const Floats frontCD = __builtin_shufflevector(c, d, 0, 8, 1, 9, 4, 12, 5, 13);
    const Floats backCD = __builtin_shufflevector(c, d, 2, 10, 3, 11, 6, 14, 7, 15);
    a = __builtin_shufflevector(frontAB, frontCD, 0, 1, 8, 9, 4, 5, 12, 13);
    b = __builtin_shufflevector(frontAB, frontCD, 2, 3, 10, 11, 6, 7, 14, 15);
    c = __builtin_shufflevector(backAB, backCD, 0, 1, 8, 9, 4, 5, 12, 13);
    d = __builtin_shufflevector(backAB, backCD, 2, 3, 10, 11, 6, 7, 14, 15);
}

SONVEX_INLINE Floats reverse(Floats a) {
    return __builtin_shufflevector(a, a, 7, 6, 5, 4, 3, 2, 1, 0);
}

/// Exchanges rows and lanes of doubleLanes vectors.
SONVEX_INLINE void transpose(Doubles *a) {
    const Doubles even01 = __builtin_shufflevector(a[0], a[1], 0, 4, 2, 6);
    const Doubles odd01 = __builtin_shufflevector(a[0], a[1], 1, 5, 3, 7);
    const Doubles even23 = __builtin_shufflevector(a[2], a[3], 0, 4, 2, 6);
    const Doubles odd23 = __builtin_shufflevector(a[2], a[3], 1, 5, 3, 7);
    a[0] = __builtin_shufflevector(even01, even23, 0, 1, 4, 5);
    a[1] = __builtin_shufflevector(odd01, odd23, 0, 1, 4, 5);
    a[2] = __builtin_shufflevector(even01, even23, 2, 3, 6, 7);
    a[3] = __builtin_shufflevector(odd01, odd23, 2, 3, 6, 7);
}

/// Both vectors rounded to float, one behind the other.
SONVEX_INLINE Floats narrow(Doubles low, Doubles high) {
    using Half = float __attribute__((vector_size(16)));
    const Half a = __builtin_convertvector(low, Half);
    const Half b = __builtin_convertvector(high, Half);
    return __builtin_shufflevector(a, b, 0, 1, 2, 3, 4, 5, 6, 7);
}

#else

SONVEX_INLINE Floats reverse(Floats a) {
    return __builtin_shufflevector(a, a, 3, 2, 1, 0);
}

/// Exchanges rows and lanes of doubleLanes vectors.
SONVEX_INLINE void transpose(Doubles *a) {
    const Doubles first = __builtin_shufflevector(a[0], a[1], 0, 2);
    a[1] = __builtin_shufflevector(a[0], a[1], 1, 3);
    a[0] = first;
}

/// Both vectors rounded to float, one behind the other.
SONVEX_INLINE Floats narrow(Doubles low, Doubles high) {
    using Half = float __attribute__((vector_size(8)));
    const Half a = __builtin_convertvector(low, Half);
    const Half b = __builtin_convertvector(high, Half);
    return __builtin_shufflevector(a, b, 0, 1, 2, 3);
}

#endif

/// Pairs of floats in reverse order, those of the second vector first.
struct ReversedPairs {
    Floats first;
    Floats second;
};

#if SONVEX_VECTOR_BYTES == 32

/// The values of even places of low and high to a, those of odd places to b.
SONVEX_INLINE void deinterleave(Floats low, Floats high, Floats &a, Floats &b) {
    const Floats front = __builtin_shufflevector(low, high, 0, 1, 2, 3, 8, 9, 10, 11);
    const Floats back = __builtin_shufflevector(low, high, 4, 5, 6, 7, 12, 13, 14, 15);
    a = __builtin_shufflevector(front, back, 0, 2, 8, 10, 4, 6, 12, 14);
    b = __builtin_shufflevector(front, back, 1, 3, 9, 11, 5, 7, 13, 15);
}

SONVEX_INLINE ReversedPairs reversePairs(Floats a, Floats b) {
    return {__builtin_shufflevector(b, b, 6, 7, 4, 5, 2, 3, 0, 1),
            __builtin_shufflevector(a, a, 6, 7, 4, 5, 2, 3, 0, 1)};
}

/// The second value of each pair with the other sign.
SONVEX_INLINE Floats conjugatePairs(Floats a) {
    return __builtin_shufflevector(a, -a, 0, 9, 2, 11, 4, 13, 6, 15);
}

#else

/// The values of even places of low and high to a, those of odd places to b.
SONVEX_INLINE void deinterleave(Floats low, Floats high, Floats &a, Floats &b) {
    a = __builtin_shufflevector(low, high, 0, 2, 4, 6);
    b = __builtin_shufflevector(low, high, 1, 3, 5, 7);
}

SONVEX_INLINE ReversedPairs reversePairs(Floats a, Floats b) {
    return {__builtin_shufflevector(b, b, 2, 3, 0, 1), __builtin_shufflevector(a, a, 2, 3, 0, 1)};
}

/// The second value of each pair with the other sign.
SONVEX_INLINE Floats conjugatePairs(Floats a) {
    return __builtin_shufflevector(a, -a, 0, 5, 2, 7);
}

#endif

} // namespace kernels::KERNEL_LEVEL
