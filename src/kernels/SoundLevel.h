#pragma once

#include "kernels/FilterAndVector.h"

/**
 * @file
 * Sound levels: exponential averages of the squares of a filtered signal, and their highest values. Nothing between the
 * signal and the averages reaches memory, so this takes half the time of a filter, a square and two averages.
 */

#ifdef __cplusplus
extern "C" {
#endif

/// An exponential average. Each value y makes it keep * average + input * y^2.
typedef struct {
    Ipp64f keep;    ///< 0 to 1: e^(-1 / (sample rate * time constant))
    Ipp64f input;   ///< above 0: 1 - keep for an average that settles at the mean square
    Ipp64f average; ///< read and written: runs on from call to call
    Ipp64f peak;    ///< read and written: rises to the highest average behind any of the values
} SonvexAverage;

/**
 * Filters len samples in double precision, as ippsIIR_64f does, and lets two averages run over the squares. Averages
 * below 1e-290 become 0 at the end: what comes below takes a CPU long.
 *
 * @param pState filter; null for the samples as they are. Runs on from call to call, of ippsIIR_64f too
 * @return ippStsNullPtrErr for any other null pointer, ippStsSizeErr for a len of 0 or less, ippStsContextMatchErr for
 *         memory that holds no state, ippStsBadArgErr for a keep or input out of its range, else ippStsNoErr; the first
 *         that applies
 */
IppStatus sonvexSoundLevel_32f(const Ipp32f *pSrc, int len, IppsIIRState_64f *pState, SonvexAverage *pFast,
                               SonvexAverage *pSlow);

#ifdef __cplusplus
}
#endif
