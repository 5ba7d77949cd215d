#pragma once

#include "kernels/Types.h"

/**
 * @file
 * The samples of one audio frame, as they come from the wire, taken apart: byte order, channels and scale in one pass.
 *
 * The source holds the samples big-endian and interleaved: those of all channels at one position of time, then those at
 * the next. Its address may be any. Channel c goes to the len floats at pDst + c * dstStep, which must not overlap with
 * the source; what lies between two channels stays as it is. A sample of 16, 24 or 32 bits is rounded once, to the
 * nearest float of full scale 1.
 */

#ifdef __cplusplus
extern "C" {
#endif

/**
 * pDst[c * dstStep + n] = sample n of channel c * 2^-15.
 *
 * @param pSrc     channels * len samples
 * @param channels interleaved in the source
 * @param len      samples of each channel
 * @param dstStep  floats from one channel to the next in pDst
 * @return ippStsNullPtrErr for a null pointer, ippStsSizeErr for channels or a len of 0 or less and for so many samples
 *         that an int cannot tell their number, ippStsStepErr for a dstStep below len, else ippStsNoErr; the first that
 *         applies
 */
IppStatus sonvexDeinterleave_16s32f(const Ipp8u *pSrc, int channels, int len, Ipp32f *pDst, int dstStep);

/// As sonvexDeinterleave_16s32f, for samples of 3 bytes, times 2^-23.
IppStatus sonvexDeinterleave_24s32f(const Ipp8u *pSrc, int channels, int len, Ipp32f *pDst, int dstStep);

/// As sonvexDeinterleave_16s32f, for samples of 4 bytes, times 2^-31.
IppStatus sonvexDeinterleave_32s32f(const Ipp8u *pSrc, int channels, int len, Ipp32f *pDst, int dstStep);

/**
 * As sonvexDeinterleave_16s32f, for samples that are floats. They stay as they are to the last bit, but for infinities
 * and what is not a number: these become 0.
 *
 * @param pReplaced receives how many samples that were
 */
IppStatus sonvexDeinterleave_32f(const Ipp8u *pSrc, int channels, int len, Ipp32f *pDst, int dstStep, int *pReplaced);

#ifdef __cplusplus
}
#endif
