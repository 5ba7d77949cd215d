#pragma once

#include "kernels/Types.h"

/**
 * @file
 * Forward Fourier transform of N = 2^order real samples, order 0 to 29, with all tables made beforehand.
 *
 * Calling order: size query, allocation by the caller, init, then any number of transforms. The tables are
 * read-only after the init, so that any number of threads may transform with them, each with a work buffer of its own.
 */

#ifdef __cplusplus
extern "C" {
#endif

/// Which direction is scaled, and by what; exactly one of them.
enum {
    IPP_FFT_DIV_FWD_BY_N = 1, ///< forward times 1/N
    IPP_FFT_DIV_INV_BY_N = 2, ///< forward unscaled, inverse times 1/N
    IPP_FFT_DIV_BY_SQRTN = 4, ///< both times 1/sqrt(N)
    IPP_FFT_NODIV_BY_ANY = 8  ///< both unscaled
};

/// Kept with the tables; the transforms are as fast and as accurate with any of them.
enum { ippAlgHintNone = 0, ippAlgHintFast = 1, ippAlgHintAccurate = 2 };

/// Tables of one order and one scaling, inside the caller's memory; their layout belongs to the CPU level.
typedef struct IppsFFTSpec_R_32f IppsFFTSpec_R_32f;

/**
 * Tells how much memory a transform of 2^order samples needs, in bytes; each amount may be 0.
 *
 * @param order          0 to 29
 * @param flag           one of IPP_FFT_...
 * @param hint           one of ippAlgHint...
 * @param pSpecSize      for pSpec of the init
 * @param pSpecBufferSize for pSpecBuffer of the init, free again afterwards
 * @param pBufferSize    for pBuffer of each transform
 * @return ippStsFftOrderErr for an order outside 0 to 29, else ippStsNullPtrErr for a null pointer, else
 *         ippStsFftFlagErr for any other flag, else ippStsNoErr
 */
IppStatus ippsFFTGetSize_R_32f(int order, int flag, int hint, int *pSpecSize, int *pSpecBufferSize, int *pBufferSize);

/**
 * Makes the tables inside pSpec and stores their address, the first multiple of 64 in pSpec, in *ppSpec. The caller
 * keeps pSpec as long as the tables are used and frees it; nothing else is to be freed.
 *
 * @return ippStsNullPtrErr for a null ppSpec or pSpec, ippStsFftOrderErr, ippStsFftFlagErr, ippStsNullPtrErr for a null
 *         pSpecBuffer with an order above 10, else ippStsNoErr; the first that applies
 */
IppStatus ippsFFTInit_R_32f(IppsFFTSpec_R_32f **ppSpec, int order, int flag, int hint, Ipp8u *pSpec,
                            Ipp8u *pSpecBuffer);

/**
 * Transforms N samples into N / 2 + 1 complex bins: X[k] = scale * sum over n of x[n] e^(-2 pi i k n / N).
 *
 * On the way values reach twice the sum of all samples' magnitudes; what exceeds a float there is lost.
 *
 * @param pSrc    N floats, at any multiple of 4
 * @param pDst    N + 2 floats: R0, 0, R1, I1, ..., R(N/2), 0 where both zeros are exact; may be pSrc
 * @param pBuffer work buffer as the size query asks for, of any alignment; may be null if it asks for 0 bytes
 * @return ippStsNullPtrErr for a null pSpec, ippStsContextMatchErr for memory that holds no tables, ippStsNullPtrErr
 * for any other null pointer, else ippStsNoErr; the first that applies
 */
IppStatus ippsFFTFwd_RToCCS_32f(const Ipp32f *pSrc, Ipp32f *pDst, const IppsFFTSpec_R_32f *pSpec, Ipp8u *pBuffer);

/**
 * Expands a packed spectrum of real samples in place: pSrcDst[lenDst - k] becomes the conjugate of pSrcDst[k] for every
 * k from 1 to below lenDst / 2.
 *
 * @param pSrcDst lenDst values, the first lenDst / 2 + 1 of them given
 * @return ippStsNullPtrErr, ippStsSizeErr for a length of 0 or less, else ippStsNoErr
 */
IppStatus ippsConjCcs_32fc_I(Ipp32fc *pSrcDst, int lenDst);

#ifdef __cplusplus
}
#endif
