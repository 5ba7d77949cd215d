#pragma once

#include "kernels/FourierTransform.h"

namespace kernels {

/// A complex transform as a chain of passes.
struct FourierChain {
    int length;
    int passes;
    int radix[10];
    const float *factors[10]; ///< of each pass, in reading order; none for a last pass
};

/**
 * How a transform of M complex points runs.
 *
 * Small: one pass from the source and one that ends the transform, with nothing but registers and the stack.
 * Flat: a chain of passes over the whole.
 * Blocked: M = R C. The C columns of R values are transformed a few at a time, turned by e^(-2 pi i c r / M) and laid
 * down so that L successive r are the lanes of L transforms of C values. So memory is passed twice, whatever M is, and
 * all passes but the first and the last of each half run in the caches.
 * Halved: two transforms of half the size, of the even and the odd samples, put together: what needs more than the
 * 2^31 - 1 bytes of work buffer that can be asked for.
 */
enum class FourierMethod { Scalar, Small, Flat, Blocked, Halved };

} // namespace kernels

/// A transform's tables and how it runs with them. The layout is the same at all levels, what the tables hold is not.
struct IppsFFTSpec_R_32f {
    Ipp32u id;
    int order;
    int scaleForward; ///< 1 if the forward transform is scaled
    int scaleInverse;
    float scaleFactor;
    int hint;
    int bufferSize; ///< bytes

    int lanes; ///< of the level that made the tables
    kernels::FourierMethod method;
    float half;                  ///< half the scale of the forward transform
    kernels::FourierChain chain; ///< flat: all of it; blocked: along the columns
    kernels::FourierChain rows;  ///< blocked: the transforms of C values
    const float *recombination;  ///< small and flat: h e^(-pi i k / M), in reading order
    const float *coarseTurn;     ///< blocked: e^(-2 pi i c r / M) for the first c of each L columns
    const float *fineTurn;       ///< blocked: e^(-2 pi i l r / M) for the lanes l
    const float *laneFactors;    ///< blocked: h e^(-pi i r / M)
    const float *rowFactors;     ///< blocked: e^(-pi i b / C), in the order of the last pass
    const float *halvedFine;     ///< halved: e^(-2 pi i k / N) for k below 2^halvedFineBits(order)
    const float *halvedCoarse;   ///< halved: the same for multiples of that power
};
