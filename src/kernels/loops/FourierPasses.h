#pragma once

#include "kernels/loops/FourierLanes.h"

/**
 * @file
 * The passes of the complex Fourier transform of M points, M = R1 R2 ... (Stockham: every pass reads one buffer in
 * natural order and writes the other, so that the result needs no bit reversal). Before the pass of radix R the
 * buffer holds x[q + s (p + k m)], p below m, k below R, q below s, where s is the product of the radices done; the
 * pass leaves at q + s (R p + k)
 *
 *     e^(-2 pi i p k / (R m)) * sum over n of x[q + s (p + n m)] e^(-2 pi i k n / R)
 *
 * Strides are in floats; a complex value counts as two.
 */

namespace kernels::KERNEL_LEVEL {
namespace {

/// Up to 8 rows of equal distance, addressed so that each is one operand of an instruction.
template <class T>
class Rows {
public:
    Rows(T *first, long stride) : low(first), high(first + 4 * stride), stride(stride), triple(3 * stride) {}

    __attribute__((always_inline)) T *operator[](int row) const {
        T *const base = (row & 4) != 0 ? high : low;
        return (row & 3) == 3 ? base + triple : base + (row & 3) * stride;
    }

    __attribute__((always_inline)) void operator+=(long floats) {
        low += floats;
        high += floats;
    }

private:
    T *low;
    T *high;
    long stride;
    long triple;
};

using InputRows = Rows<const float>;
using OutputRows = Rows<float>;

/// A tile of L rows, each with one value of L successive blocks: the same with rows and lanes exchanged.
template <class V>
SONVEX_INLINE void putTransposed(float *to, long stride, const Complex<V> *x) {
    constexpr int L = Lanes<V>::amount;
    V part[L];
    for (int k = 0; k < L; ++k) {
        part[k] = x[Lanes<V>::order[k]].re;
    }
    Lanes<V>::transpose(part);
    for (int lane = 0; lane < L; ++lane) {
        Lanes<V>::put(to + Lanes<V>::order[lane] * stride, part[lane]);
    }
    for (int k = 0; k < L; ++k) {
        part[k] = x[Lanes<V>::order[k]].im;
    }
    Lanes<V>::transpose(part);
    for (int lane = 0; lane < L; ++lane) {
        Lanes<V>::put(to + Lanes<V>::order[lane] * stride + L, part[lane]);
    }
}

/// The first pass (s = 1) of one transform: from interleaved values, with a factor for each value in lane order.
template <class V, int R>
void firstPass(const float *src, float *dst, int m, const float *factors) {
    constexpr int L = Lanes<V>::amount;
    InputRows in(src, 2L * m);
    for (int p = 0; p < m; p += L) {
        Complex<V> x[R];
        for (int k = 0; k < R; ++k) {
            x[k] = Lanes<V>::getInterleaved(in[k]);
        }
        Butterfly<R>::run(x);
        for (int k = 1; k < R; ++k) {
            x[k] = x[k] * getBlock<V>(factors);
            factors += 2 * L;
        }
        for (int tile = 0; tile < R; tile += L) {
            putTransposed(dst + 2 * tile, 2 * R, x + tile);
        }
        in += 2 * L;
        dst += 2 * L * R;
    }
}

/// The first pass (s = columns) of a batch of transforms: of as many columns of a matrix of interleaved values.
template <class V, int R>
void columnPass(const float *src, long stride, int columns, float *dst, int m, const float *factors) {
    constexpr int L = Lanes<V>::amount;
    OutputRows out(dst, 2L * columns);
    for (int p = 0; p < m; ++p) {
        InputRows in(src + p * stride, m * stride);
        for (int column = 0; column < columns; column += L) {
            Complex<V> x[R];
            for (int k = 0; k < R; ++k) {
                x[k] = Lanes<V>::getInterleaved(in[k]);
            }
            Butterfly<R>::run(x);
            putBlock(out[0], x[0]);
            for (int k = 1; k < R; ++k) {
                putBlock(out[k], x[k] * getBroadcast<V>(factors + 2 * (k - 1)));
            }
            in += 2 * L;
            out += 2 * L;
        }
        factors += 2 * (R - 1);
        out += 2L * columns * (R - 1);
    }
}

template <class V, int R, bool HasFactors>
SONVEX_INLINE void middleButterfly(const InputRows &in, const OutputRows &out, const float *factors) {
    Complex<V> x[R];
    for (int k = 0; k < R; ++k) {
        x[k] = getBlock<V>(in[k]);
    }
    Butterfly<R>::run(x);
    putBlock(out[0], x[0]);
    for (int k = 1; k < R; ++k) {
        putBlock(out[k], HasFactors ? x[k] * getBroadcast<V>(factors + 2 * (k - 1)) : x[k]);
    }
}

/// A pass with s of L and more; without factors if it is the last one (m = 1), which has none but 1.
template <class V, int R, bool HasFactors>
void middlePass(const float *src, float *dst, int m, int s, const float *factors) {
    constexpr int L = Lanes<V>::amount;
    const long row = 2L * s;
    InputRows in(src, row * m);
    if (s == L) { // one block a row: known distances, no inner loop
        for (const float *const end = src + row * m; in[0] != end; in += 2 * L) {
            middleButterfly<V, R, HasFactors>(in, OutputRows(dst, 2 * L), factors);
            dst += 2 * L * R;
            if constexpr (HasFactors) {
                factors += 2 * (R - 1);
            }
        }
        return;
    }
    OutputRows out(dst, row);
    for (const float *const end = src + row * m; in[0] != end;) {
        for (const float *const endOfRow = in[0] + row; in[0] != endOfRow; in += 2 * L) {
            middleButterfly<V, R, HasFactors>(in, out, factors);
            out += 2 * L;
        }
        if constexpr (HasFactors) {
            factors += 2 * (R - 1);
        }
        out += row * (R - 1);
    }
}

/**
 * Where the transform Z of M complex values z[n] = x[2n] + i x[2n + 1] becomes that of the 2 M real ones: with the
 * mirrored value B = conj Z[M - k],
 *
 *     X[k] = h (Z[k] + B) - i w (Z[k] - B),    conj X[M - k] = h (Z[k] + B) + i w (Z[k] - B)
 *
 * where h is half the scale and w = h e^(-pi i k / M).
 *
 * @param mirrored Z[M - k]
 */
template <class V>
SONVEX_INLINE void recombine(Complex<V> a, Complex<V> mirrored, Complex<V> w, V h, Complex<V> &atK,
                             Complex<V> &atMirror) {
    const Complex<V> sum{a.re + mirrored.re, a.im - mirrored.im};
    const Complex<V> difference{a.re - mirrored.re, a.im + mirrored.im};
    const Complex<V> turned{w.re * difference.im + w.im * difference.re, w.im * difference.im - w.re * difference.re};
    atK = {h * sum.re + turned.re, h * sum.im + turned.im};
    atMirror = {h * sum.re - turned.re, turned.im - h * sum.im};
}

/// Output rows of a pair of mirrored blocks.
struct MirrorRows {
    OutputRows up;   ///< where X[k] of the left block begin
    OutputRows down; ///< where the L mirrored values begin, those of the left block's last lane first
};

/**
 * The last butterfly of a left block of columns q and its mirror image, and the recombination. The mirror image of L
 * columns lies in two blocks: its first lane belongs to the block before (from the right, where the mirror image
 * ends), all others to the right block.
 *
 * @param before the inputs of that first lane
 * @param factor gives w of the row that it is called with
 */
template <class V, int R, class Factor>
SONVEX_INLINE void finishBlocks(const InputRows &left, const InputRows &right, const Complex<V> *before,
                                const MirrorRows &to, Factor factor, V h) {
    Complex<V> x[R];
    Complex<V> y[R];
    for (int k = 0; k < R; ++k) {
        y[k] = join(before[k], getBlock<V>(right[k]));
    }
    Butterfly<R>::run(y);
    for (int k = 0; k < R; ++k) {
        x[k] = getBlock<V>(left[k]);
    }
    Butterfly<R>::run(x);
    for (int k = 0; k < R; ++k) {
        Complex<V> atK;
        Complex<V> atMirror;
        recombine(x[k], mirror(y[R - 1 - k]), factor(k), h, atK, atMirror);
        Lanes<V>::putInterleaved(to.up[k], atK);
        Lanes<V>::putInterleavedBackwards(to.down[R - 1 - k], atMirror);
    }
}

/// The inputs of the column behind the last one of a row: those of the row's first column, as the next row sees them.
template <class V>
SONVEX_INLINE void wrapAround(Complex<V> *x) {
    x[1] = timesMinusI(x[1]);
    x[2] = timesMinusOne(x[2]);
    x[3] = timesI(x[3]);
}

/**
 * What is left of the last pass of radix 4: a column that is its own mirror image, four values that are pairs of each
 * other.
 *
 * @param x the column's inputs
 * @param mirrored the inputs of its mirror image
 * @param to where X of row k is at to + k * stride
 */
template <class Factor>
SONVEX_INLINE void finishColumn(Complex<float> *x, Complex<float> *mirrored, float *to, long stride, Factor factor,
                                float h) {
    Butterfly<4>::run(x);
    Butterfly<4>::run(mirrored);
    for (int k = 0; k < 4; ++k) {
        Complex<float> atK;
        Complex<float> atMirror;
        recombine(x[k], mirrored[3 - k], factor(k), h, atK, atMirror);
        to[k * stride] = atK.re;
        to[k * stride + 1] = atK.im;
    }
}

SONVEX_INLINE void getColumn(const InputRows &rows, int lanes, Complex<float> *x) {
    for (int k = 0; k < 4; ++k) {
        x[k] = {rows[k][0], rows[k][lanes]};
    }
}

/**
 * The last pass (m = 1, radix 4) of a single transform of M = 4 s points, s at least 2 L, and the recombination.
 *
 * @param factors w for each value of the left half of the blocks, then for the column in the middle
 */
template <class V>
void lastPass(const float *src, float *dst, int s, const float *factors, float h) {
    constexpr int L = Lanes<V>::amount;
    const long row = 2L * s;
    const V half = V{} + h;
    const auto factor = [&factors](int k) { return getBlock<V>(factors + 2 * L * k); };
    InputRows left(src, row);
    InputRows right(src + row - 2 * L, row);
    MirrorRows to{{dst, row}, {dst + row - 2 * (L - 1), row}};

    Complex<V> before[4];
    for (int k = 0; k < 4; ++k) {
        before[k] = getBlock<V>(left[k]);
    }
    wrapAround(before);
    finishBlocks<V, 4>(left, right, before, to, factor, half);
    for (const float *const end = src + row / 2 - 2 * L; left[0] != end;) {
        for (int k = 0; k < 4; ++k) {
            before[k] = getBlock<V>(right[k]);
        }
        left += 2 * L;
        right += -2 * L;
        to.up += 2 * L;
        to.down += -2 * L;
        factors += 8 * L;
        finishBlocks<V, 4>(left, right, before, to, factor, half);
    }
    factors += 8 * L;

    Complex<float> middle[4];
    Complex<float> mirrored[4];
    getColumn(right, L, middle);
    getColumn(right, L, mirrored);
    const auto middleFactor = [factors](int k) { return Complex<float>{factors[2 * k], factors[2 * k + 1]}; };
    finishColumn(middle, mirrored, dst + row / 2, row, middleFactor, h);
    dst[1] = 0;
    dst[4 * row + 1] = 0;
}

/// The last pass of a transform whose rows are one block (s = L, M = R L): the block mirrors itself.
template <class V, int R>
void lastPassOfOneBlock(const float *src, float *dst, const float *factors, float h) {
    constexpr int L = Lanes<V>::amount;
    Complex<V> x[R];
    for (int k = 0; k < R; ++k) {
        x[k] = getBlock<V>(src + 2 * L * k);
    }
    Butterfly<R>::run(x);
    for (int k = 0; k < R / 2; ++k) {
        Complex<V> atK;
        Complex<V> atMirror;
        recombine(x[k], mirror(join(x[(R - k) % R], x[R - 1 - k])), getBlock<V>(factors + 2 * L * k), V{} + h, atK,
                  atMirror);
        Lanes<V>::putInterleaved(dst + 2 * L * k, atK);
        Lanes<V>::putInterleavedBackwards(dst + 2 * L * (R - 1 - k) + 2, atMirror);
    }
    dst[L * R] = 2 * h * x[R / 2].re[0];
    dst[L * R + 1] = -2 * h * x[R / 2].im[0];
    dst[1] = 0;
    dst[2 * L * R + 1] = 0;
}

} // namespace
} // namespace kernels::KERNEL_LEVEL
