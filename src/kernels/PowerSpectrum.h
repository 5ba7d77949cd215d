#pragma once

#include "kernels/Types.h"

/**
 * @file
 * What follows a transform, in one pass each: scaled powers in double precision, and their average over time.
 */

#ifdef __cplusplus
extern "C" {
#endif

/// pDst[n] = factor * (re^2 + im^2) of pSrc[n], computed in single precision. ippStsNullPtrErr for a null pointer, then
/// ippStsSizeErr for a len of 0 or less.
IppStatus sonvexScaledPower_32fc64f(const Ipp32fc *pSrc, Ipp32f factor, Ipp64f *pDst, int len);

/**
 * Moves the average of the latest vectors on by one: pAverage[n] += (pNewest[n] - pOldest[n]) / amount. The new average
 * is stored in the place of the oldest vector too, which has left the window.
 *
 * @param amount vectors in the window
 * @return ippStsNullPtrErr for a null pointer, ippStsSizeErr for a len of 0 or less, ippStsDivByZeroErr for an amount
 * of 0, else ippStsNoErr; the first that applies
 */
IppStatus sonvexMoveAverage_64f(const Ipp64f *pNewest, Ipp64f *pOldest, Ipp64f *pAverage, Ipp64f amount, int len);

#ifdef __cplusplus
}
#endif
