#pragma once

#include "kernels/loops/Vector.h"

/**
 * @file
 * Complex values with real and imaginary parts in vectors (or scalars) of their own, and the discrete Fourier
 * transforms of 4 and 8 of them, which the passes of the Fourier transform are made of.
 */

namespace kernels::KERNEL_LEVEL {
namespace {

template <class V>
struct Complex {
    V re;
    V im;
};

template <class V>
SONVEX_INLINE Complex<V> operator+(Complex<V> a, Complex<V> b) {
    return {a.re + b.re, a.im + b.im};
}

template <class V>
SONVEX_INLINE Complex<V> operator-(Complex<V> a, Complex<V> b) {
    return {a.re - b.re, a.im - b.im};
}

template <class V>
SONVEX_INLINE Complex<V> operator*(Complex<V> a, Complex<V> b) {
    return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}

template <class V>
SONVEX_INLINE Complex<V> timesMinusOne(Complex<V> a) {
    return {-a.re, -a.im};
}

template <class V>
SONVEX_INLINE Complex<V> timesI(Complex<V> a) {
    return {-a.im, a.re};
}

template <class V>
SONVEX_INLINE Complex<V> timesMinusI(Complex<V> a) {
    return {a.im, -a.re};
}

/// The DFT of R values in place, in natural order: x[k] = sum over n of x[n] e^(-2 pi i k n / R).
template <int R>
struct Butterfly;

template <>
struct Butterfly<2> {
    template <class V>
    SONVEX_INLINE void run(Complex<V> *x) {
        const Complex<V> sum = x[0] + x[1];
        x[1] = x[0] - x[1];
        x[0] = sum;
    }
};

template <>
struct Butterfly<4> {
    template <class V>
    SONVEX_INLINE void run(Complex<V> *x) {
        run(x[0], x[1], x[2], x[3]);
    }

    template <class V>
    SONVEX_INLINE void run(Complex<V> &x0, Complex<V> &x1, Complex<V> &x2, Complex<V> &x3) {
        const Complex<V> evenSum = x0 + x2;
        const Complex<V> evenDifference = x0 - x2;
        const Complex<V> oddSum = x1 + x3;
        const Complex<V> oddTurned = timesMinusI(x1 - x3);
        x0 = evenSum + oddSum;
        x1 = evenDifference + oddTurned;
        x2 = evenSum - oddSum;
        x3 = evenDifference - oddTurned;
    }
};

template <>
struct Butterfly<8> {
    template <class V>
    SONVEX_INLINE void run(Complex<V> *x) {
        constexpr float half = 0.70710678118654752F; // of the square root of 2
        Complex<V> odd0 = x[1];
        Complex<V> odd1 = x[3];
        Complex<V> odd2 = x[5];
        Complex<V> odd3 = x[7];
        Butterfly<4>::run(x[0], x[2], x[4], x[6]);
        Butterfly<4>::run(odd0, odd1, odd2, odd3);
        // The factors e^(-i pi / 4) and e^(-3 i pi / 4) of odd1 and odd3, without their common length.
        const Complex<V> turned1{odd1.re + odd1.im, odd1.im - odd1.re};
        const Complex<V> turned3{odd3.im - odd3.re, -(odd3.re + odd3.im)};
        const Complex<V> even0 = x[0];
        const Complex<V> even1 = x[2];
        const Complex<V> even2 = x[4];
        const Complex<V> even3 = x[6];
        x[0] = even0 + odd0;
        x[4] = even0 - odd0;
        x[1] = {even1.re + half * turned1.re, even1.im + half * turned1.im};
        x[5] = {even1.re - half * turned1.re, even1.im - half * turned1.im};
        x[2] = even2 + timesMinusI(odd2);
        x[6] = even2 - timesMinusI(odd2);
        x[3] = {even3.re + half * turned3.re, even3.im + half * turned3.im};
        x[7] = {even3.re - half * turned3.re, even3.im - half * turned3.im};
    }
};

} // namespace
} // namespace kernels::KERNEL_LEVEL
