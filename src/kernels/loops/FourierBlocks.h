#pragma once

#include "kernels/loops/FourierPasses.h"

/**
 * @file
 * The passes that join the two halves of a blocked transform (see FourierMethod).
 */

namespace kernels::KERNEL_LEVEL {
namespace {

/**
 * Turns the transformed columns c and lays them down with lanes of r.
 *
 * @param src R rows of `columns` values
 * @param dst row c of the first tile; a tile holds, for L successive r, C blocks
 * @param tile floats from one tile to the next
 * @param coarse factors for the first of each L columns, R pairs each
 * @param fine factors for the lanes, R blocks
 */
template <class V>
void turnPass(const float *src, int columns, float *dst, int length, long tile, const float *coarse,
              const float *fine) {
    constexpr int L = Lanes<V>::amount;
    for (int r = 0; r < length; r += L) {
        for (int group = 0; group < columns; group += L) {
            const float *const from = src + 2L * columns * r + 2 * group;
            const float *const turn = coarse + 2L * length * (group / L) + 2 * r;
            Complex<V> x[L];
            for (int k = 0; k < L; ++k) {
                x[k] = getBlock<V>(from + 2L * columns * k) *
                       (getBroadcast<V>(turn + 2 * k) * getBlock<V>(fine + 2L * L * (r + k)));
            }
            putTransposed(dst + 2 * L * group, 2 * L, x);
        }
        dst += tile;
    }
}

/// A block of L transforms of C values before their last pass (radix 4), and where its results belong.
struct BlockPair {
    const float *left;
    const float *right;  ///< the block that holds all but one lane of the mirror image
    const float *before; ///< the block that holds the other one; null for the first pair
};

/**
 * The last pass (radix 4) of a pair of mirrored blocks, and the recombination.
 *
 * @param n C / 4
 * @param up X of the left block's first value
 * @param down X of the mirror image of its last lane
 * @param stride floats from a row of X to the next
 */
template <class V>
void finishPair(const BlockPair &blocks, int n, float *up, float *down, long stride, const float *laneFactors,
                const float *rowFactors, float h) {
    constexpr int L = Lanes<V>::amount;
    const long quarter = 2L * L * n;
    const long last = quarter - 2 * L;
    const V half = V{} + h;
    const Complex<V> lane = getBlock<V>(laneFactors);
    const auto factor = [lane, &rowFactors](int k) { return lane * getBroadcast<V>(rowFactors + 2 * k); };
    InputRows left(blocks.left, quarter);
    InputRows right(blocks.right + last, quarter);
    // The first lane of the first pair's mirror image is column 0 again, one row on.
    const bool wraps = blocks.before == nullptr;
    InputRows carry(wraps ? blocks.left + quarter : blocks.before + last, quarter);
    MirrorRows to{{up, stride * n}, {down + stride * (n - 1), stride * n}};
    for (int row = 0; row < n; ++row) {
        Complex<V> before[4];
        if (wraps && row == 0) {
            for (int k = 0; k < 4; ++k) {
                before[k] = getBlock<V>(left[k]);
            }
            wrapAround(before);
        } else {
            for (int k = 0; k < 4; ++k) {
                before[k] = getBlock<V>(carry[k]);
            }
        }
        finishBlocks<V, 4>(left, right, before, to, factor, half);
        left += 2 * L;
        right += -2 * L;
        carry += -2 * L;
        to.up += stride;
        to.down += -stride;
        rowFactors += 8;
    }
}

/// The same for the column R / 2, which is its own mirror image: the first lane of the given block.
template <class V>
void finishMiddle(const float *block, int n, float *to, long stride, const float *laneFactors, const float *rowFactors,
                  float h) {
    constexpr int L = Lanes<V>::amount;
    const Complex<float> lane{laneFactors[0], laneFactors[L]};
    InputRows rows(block, 2L * L * n);
    InputRows mirroredRows(block + 2L * L * (n - 1), 2L * L * n);
    for (int row = 0; row < n; ++row) {
        Complex<float> x[4];
        Complex<float> mirrored[4];
        getColumn(rows, L, x);
        getColumn(mirroredRows, L, mirrored);
        const auto factor = [lane, rowFactors](int k) {
            return lane * Complex<float>{rowFactors[2 * k], rowFactors[2 * k + 1]};
        };
        finishColumn(x, mirrored, to, stride * n, factor, h);
        rows += 2 * L;
        mirroredRows += -2 * L;
        to += stride;
        rowFactors += 8;
    }
}

} // namespace
} // namespace kernels::KERNEL_LEVEL
