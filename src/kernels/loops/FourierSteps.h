#pragma once

#include <stddef.h>

#include "kernels/Types.h"
#include "kernels/loops/Vector.h"

/**
 * @file
 * The numbers that the making of a transform's tables and the transform itself must agree on. What each table holds
 * stands in FourierTables.h, which value a lane holds in FourierLanes.h, and the order in which a pass reads its
 * factors at the pass, in FourierPasses.h and FourierBlocks.h.
 */

namespace kernels::KERNEL_LEVEL {
namespace {

constexpr Ipp32u fourierTablesId = 7;
constexpr size_t alignment = 64;       ///< of the tables and of the work buffer: a cache line
constexpr int highestOrderOfQuads = 6; ///< small transforms up to here have 4 lanes at every level
constexpr int blockColumns = 8;        ///< of a blocked transform done at a time: a cache line of each row

/// The radix of the last pass of a small transform, which leaves as many in a row as a vector has lanes.
constexpr int smallLastRadix(int order) {
    return order == 5 ? 4 : 8;
}

/// Floats of the tiles of a blocked transform; its scratch memory lies behind them.
SONVEX_INLINE long areaOfTiles(int R, int C) {
    return 2L * R * C;
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

/// How many bits of k the fine table of a halved transform covers; the coarse one has the others.
SONVEX_INLINE int halvedFineBits(int order) {
    return (order - 1) / 2;
}

} // namespace
} // namespace kernels::KERNEL_LEVEL
