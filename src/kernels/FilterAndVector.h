#pragma once

#include "kernels/Types.h"

/**
 * @file
 * Vector operations, the Hann window, and a cascade of second-order filter sections in double precision. Any
 * multiple of an element's size will do as an address; a multiple of 64 is the fast one.
 */

#ifdef __cplusplus
extern "C" {
#endif

/// pDst[n] = val for n below len. ippStsNullPtrErr for a null pointer, then ippStsSizeErr for a len of 0 or less.
IppStatus ippsSet_32f(Ipp32f val, Ipp32f *pDst, int len);

/// pSrcDst[n] = pSrcDst[n] * pSrc[n]. Status as with ippsSet_32f.
IppStatus ippsMul_32f_I(const Ipp32f *pSrc, Ipp32f *pSrcDst, int len);

/// pDst[n] = pSrc[n]^2. Status as with ippsSet_32f.
IppStatus ippsSqr_64f(const Ipp64f *pSrc, Ipp64f *pDst, int len);

/// pDst[n] = re^2 + im^2 of pSrc[n]. Status as with ippsSet_32f.
IppStatus ippsPowerSpectr_32fc(const Ipp32fc *pSrc, Ipp32f *pDst, int len);

/**
 * Multiplies pSrcDst by the symmetric Hann window 0.5 - 0.5 cos(2 pi n / (len - 1)): both ends become 0,
 * whatever they were, and the middle of an odd length stays as it is.
 *
 * @return ippStsNullPtrErr, ippStsSizeErr for a len below 3, else ippStsNoErr
 */
IppStatus ippsWinHann_32f_I(Ipp32f *pSrcDst, int len);

/// State of a cascade, inside the caller's memory.
typedef struct IppsIIRState_64f IppsIIRState_64f;

/// Tells how many bytes the state of numBq sections needs. ippStsNullPtrErr, ippStsIIROrderErr for numBq of 0 or less
/// and for so many sections that an int cannot tell their size.
IppStatus ippsIIRGetStateSize_BiQuad_64f(int numBq, int *pBufferSize);

/**
 * Builds a state inside pBuf and stores its address, the first multiple of 32 in pBuf, in *ppState. The caller keeps
 * pBuf as long as the state is used and frees it.
 *
 * @param pTaps    B0, B1, B2, A0, A1, A2 of each section
 * @param pDlyLine 2 delay values of each section, or null for silence
 * @return ippStsNullPtrErr for a null ppState, pTaps or pBuf, ippStsIIROrderErr for a numBq of 0 or less,
 *         ippStsDivByZeroErr for an A0 or B0 of 0, else ippStsNoErr; the first that applies
 */
IppStatus ippsIIRInit_BiQuad_64f(IppsIIRState_64f **ppState, const Ipp64f *pTaps, int numBq, const Ipp64f *pDlyLine,
                                 Ipp8u *pBuf);

/**
 * Filters len values; consecutive calls continue one signal. Each section, in its turn, with all taps divided by A0
 * (transposed direct form II):
 *
 *     y = B0 x + d0;  d0 = B1 x - A1 y + d1;  d1 = B2 x - A2 y
 *
 * A state serves one thread at a time. Between calls, delay values below 1e-290 become 0.
 *
 * @param pDst may be pSrc
 * @return ippStsNullPtrErr for any null pointer, ippStsSizeErr for a len of 0 or less, ippStsContextMatchErr for memory
 *         that holds no state, else ippStsNoErr; the first that applies
 */
IppStatus ippsIIR_64f(const Ipp64f *pSrc, Ipp64f *pDst, int len, IppsIIRState_64f *pState);

#ifdef __cplusplus
}
#endif
