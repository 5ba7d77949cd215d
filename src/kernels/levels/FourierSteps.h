#pragma once

#include "kernels/levels/FourierSpec.h"
#include "kernels/levels/Vector.h"

/**
 * @file
 * What the makers and the users of a spec's tables must agree on.
 */

namespace kernels::KERNEL_LEVEL {
namespace {

constexpr Ipp32u fourierSpecId = 7;
constexpr int blockColumns = 8; ///< of a blocked transform done at a time: a cache line of each row

SONVEX_INLINE int floorOfLog2(int value) {
    return 31 - __builtin_clz(static_cast<unsigned>(value));
}

SONVEX_INLINE FourierMethod methodOf(int order, int highestFlatOrder) {
    constexpr int firstFlatOrder = floatLanes == 8 ? 8 : 7; // from there on a row has at least two blocks
    if (order < 5) {
        return FourierMethod::Scalar;
    }
    if (order < firstFlatOrder) {
        return FourierMethod::Small;
    }
    if (order <= highestFlatOrder) {
        return FourierMethod::Flat;
    }
    return order < 29 ? FourierMethod::Blocked : FourierMethod::Halved;
}

/// The radix of the last pass of a small transform, which leaves as many in a row as a vector has lanes.
SONVEX_INLINE int smallLastRadix(int order) {
    return order == 5 ? 4 : 8;
}

/// Floats of one of the five scratch areas for the rows.
SONVEX_INLINE int scratchOfRows(int C) {
    return 2 * floatLanes * C;
}

/// Floats of one of the two scratch areas for the columns.
SONVEX_INLINE int scratchOfColumns(int R) {
    return 2 * blockColumns * R;
}

SONVEX_INLINE int scratchOfBlocks(int R, int C) {
    const int columns = 2 * scratchOfColumns(R);
    const int rows = 5 * scratchOfRows(C);
    return columns > rows ? columns : rows;
}

} // namespace
} // namespace kernels::KERNEL_LEVEL
