#pragma once

#include "kernels/loops/Complex.h"

/**
 * @file
 * How complex values lie in vectors and memory between the passes of the Fourier transform.
 *
 * In memory a group of L values is one block of 2 L floats: L real parts, then L imaginary parts. Which value a lane
 * holds is told by Lanes<V>::order. With 8 lanes it is the order that one shuffle within each half of a vector makes of
 * interleaved values and makes back into them.
 */

namespace kernels::KERNEL_LEVEL {
namespace {

template <class V>
struct Lanes;

template <>
struct Lanes<Quads> {
    static constexpr int amount = 4;
    static constexpr int order[4] = {0, 1, 2, 3};

    SONVEX_INLINE Quads get(const float *from) {
        Quads value;
        __builtin_memcpy(&value, from, sizeof value);
        return value;
    }

    SONVEX_INLINE void put(float *to, Quads value) { __builtin_memcpy(to, &value, sizeof value); }

    /// Lane l of the result is the value for index (4 - l) mod 4.
    SONVEX_INLINE Quads mirror(Quads a) { return __builtin_shufflevector(a, a, 0, 3, 2, 1); }

    /// The first lane of first, the others of rest.
    SONVEX_INLINE Quads join(Quads first, Quads rest) { return __builtin_shufflevector(first, rest, 0, 5, 6, 7); }

    SONVEX_INLINE Complex<Quads> getInterleaved(const float *from) {
        const Quads low = get(from);
        const Quads high = get(from + 4);
        return {__builtin_shufflevector(low, high, 0, 2, 4, 6), __builtin_shufflevector(low, high, 1, 3, 5, 7)};
    }

    SONVEX_INLINE void putInterleaved(float *to, Complex<Quads> a) {
        put(to, __builtin_shufflevector(a.re, a.im, 0, 4, 1, 5));
        put(to + 4, __builtin_shufflevector(a.re, a.im, 2, 6, 3, 7));
    }

    /// As putInterleaved with the values in reverse.
    SONVEX_INLINE void putInterleavedBackwards(float *to, Complex<Quads> a) {
        put(to, __builtin_shufflevector(a.re, a.im, 3, 7, 2, 6));
        put(to + 4, __builtin_shufflevector(a.re, a.im, 1, 5, 0, 4));
    }

    SONVEX_INLINE void transpose(Quads *a) { transposeFours(a[0], a[1], a[2], a[3]); }
};

#if SONVEX_VECTOR_BYTES == 32

template <>
struct Lanes<Floats> {
    static constexpr int amount = 8;
    static constexpr int order[8] = {0, 1, 4, 5, 2, 3, 6, 7};

    SONVEX_INLINE Floats get(const float *from) { return load(from); }
    SONVEX_INLINE void put(float *to, Floats value) { store(to, value); }

    /// The lane of index i becomes that of index (8 - i) mod 8.
    SONVEX_INLINE Floats mirror(Floats a) { return __builtin_shufflevector(a, a, 0, 7, 2, 5, 6, 3, 4, 1); }

    SONVEX_INLINE Floats join(Floats first, Floats rest) {
        return __builtin_shufflevector(first, rest, 0, 9, 10, 11, 12, 13, 14, 15);
    }

    SONVEX_INLINE Complex<Floats> getInterleaved(const float *from) {
        const Floats low = load(from);
        const Floats high = load(from + 8);
        return {__builtin_shufflevector(low, high, 0, 2, 8, 10, 4, 6, 12, 14),
                __builtin_shufflevector(low, high, 1, 3, 9, 11, 5, 7, 13, 15)};
    }

    SONVEX_INLINE void putInterleaved(float *to, Complex<Floats> a) {
        store(to, __builtin_shufflevector(a.re, a.im, 0, 8, 1, 9, 4, 12, 5, 13));
        store(to + 8, __builtin_shufflevector(a.re, a.im, 2, 10, 3, 11, 6, 14, 7, 15));
    }

    /// As putInterleaved with the values in reverse.
    SONVEX_INLINE void putInterleavedBackwards(float *to, Complex<Floats> a) {
        const Floats low = __builtin_shufflevector(a.re, a.im, 0, 8, 1, 9, 4, 12, 5, 13);
        const Floats high = __builtin_shufflevector(a.re, a.im, 2, 10, 3, 11, 6, 14, 7, 15);
        store(to, __builtin_shufflevector(high, high, 6, 7, 4, 5, 2, 3, 0, 1));
        store(to + 8, __builtin_shufflevector(low, low, 6, 7, 4, 5, 2, 3, 0, 1));
    }

    SONVEX_INLINE void transpose(Floats *a) {
        transposeFours(a[0], a[1], a[2], a[3]);
        transposeFours(a[4], a[5], a[6], a[7]);
        for (int row = 0; row < 4; ++row) {
            const Floats low = __builtin_shufflevector(a[row], a[row + 4], 0, 1, 2, 3, 8, 9, 10, 11);
            a[row + 4] = __builtin_shufflevector(a[row], a[row + 4], 4, 5, 6, 7, 12, 13, 14, 15);
            a[row] = low;
        }
    }
};

#endif

template <class V>
SONVEX_INLINE Complex<V> getBlock(const float *from) {
    return {Lanes<V>::get(from), Lanes<V>::get(from + Lanes<V>::amount)};
}

template <class V>
SONVEX_INLINE void putBlock(float *to, Complex<V> a) {
    Lanes<V>::put(to, a.re);
    Lanes<V>::put(to + Lanes<V>::amount, a.im);
}

/// The same value in all lanes; from points to its real and imaginary part.
template <class V>
SONVEX_INLINE Complex<V> getBroadcast(const float *from) {
    return {V{} + from[0], V{} + from[1]};
}

template <class V>
SONVEX_INLINE Complex<V> mirror(Complex<V> a) {
    return {Lanes<V>::mirror(a.re), Lanes<V>::mirror(a.im)};
}

template <class V>
SONVEX_INLINE Complex<V> join(Complex<V> first, Complex<V> rest) {
    return {Lanes<V>::join(first.re, rest.re), Lanes<V>::join(first.im, rest.im)};
}

} // namespace
} // namespace kernels::KERNEL_LEVEL
