#pragma once

#include "kernels/CpuLevel.h"
#include "kernels/Dispatch.h"
#include "kernels/FilterAndVector.h"
#include "kernels/FourierTransform.h"
#include "kernels/PowerSpectrum.h"
#include "kernels/SampleBlocks.h"
#include "kernels/SoundLevel.h"

/**
 * @file
 * The dispatched kernels. Declarations, entries and rows of the dispatch table are all made from these lists, so a new
 * kernel is one line here and its function in each level.
 *
 * X(result, name, parameters, arguments)
 */

/// Kernels that are the same at every level.
#define SONVEX_COMMON_KERNELS(X)                                                                                       \
    X(Ipp8u *, ippsMalloc_8u, (int length), (length))                                                                  \
    X(Ipp32f *, ippsMalloc_32f, (int length), (length))                                                                \
    X(Ipp32fc *, ippsMalloc_32fc, (int length), (length))                                                              \
    X(void, ippsFree, (void *pointer), (pointer))

/// Kernels with an implementation of their own at each level.
#define SONVEX_LEVEL_KERNELS(X)                                                                                        \
    X(IppStatus, ippsSet_32f, (Ipp32f val, Ipp32f * pDst, int len), (val, pDst, len))                                  \
    X(IppStatus, ippsMul_32f_I, (const Ipp32f *pSrc, Ipp32f *pSrcDst, int len), (pSrc, pSrcDst, len))                  \
    X(IppStatus, ippsSqr_64f, (const Ipp64f *pSrc, Ipp64f *pDst, int len), (pSrc, pDst, len))                          \
    X(IppStatus, ippsPowerSpectr_32fc, (const Ipp32fc *pSrc, Ipp32f *pDst, int len), (pSrc, pDst, len))                \
    X(IppStatus, ippsWinHann_32f_I, (Ipp32f * pSrcDst, int len), (pSrcDst, len))                                       \
    X(IppStatus, ippsConjCcs_32fc_I, (Ipp32fc * pSrcDst, int lenDst), (pSrcDst, lenDst))                               \
    X(IppStatus, ippsFFTGetSize_R_32f,                                                                                 \
      (int order, int flag, int hint, int *pSpecSize, int *pSpecBufferSize, int *pBufferSize),                         \
      (order, flag, hint, pSpecSize, pSpecBufferSize, pBufferSize))                                                    \
    X(IppStatus, ippsFFTInit_R_32f,                                                                                    \
      (IppsFFTSpec_R_32f * *ppSpec, int order, int flag, int hint, Ipp8u *pSpec, Ipp8u *pSpecBuffer),                  \
      (ppSpec, order, flag, hint, pSpec, pSpecBuffer))                                                                 \
    X(IppStatus, ippsFFTFwd_RToCCS_32f,                                                                                \
      (const Ipp32f *pSrc, Ipp32f *pDst, const IppsFFTSpec_R_32f *pSpec, Ipp8u *pBuffer),                              \
      (pSrc, pDst, pSpec, pBuffer))                                                                                    \
    X(IppStatus, ippsIIRGetStateSize_BiQuad_64f, (int numBq, int *pBufferSize), (numBq, pBufferSize))                  \
    X(IppStatus, ippsIIRInit_BiQuad_64f,                                                                               \
      (IppsIIRState_64f * *ppState, const Ipp64f *pTaps, int numBq, const Ipp64f *pDlyLine, Ipp8u *pBuf),              \
      (ppState, pTaps, numBq, pDlyLine, pBuf))                                                                         \
    X(IppStatus, ippsIIR_64f, (const Ipp64f *pSrc, Ipp64f *pDst, int len, IppsIIRState_64f *pState),                   \
      (pSrc, pDst, len, pState))                                                                                       \
    X(IppStatus, sonvexSoundLevel_32f,                                                                                 \
      (const Ipp32f *pSrc, int len, IppsIIRState_64f *pState, SonvexAverage *pFast, SonvexAverage *pSlow),             \
      (pSrc, len, pState, pFast, pSlow))                                                                               \
    X(IppStatus, sonvexScaledPower_32fc64f, (const Ipp32fc *pSrc, Ipp32f factor, Ipp64f *pDst, int len),               \
      (pSrc, factor, pDst, len))                                                                                       \
    X(IppStatus, sonvexMoveAverage_64f,                                                                                \
      (const Ipp64f *pNewest, Ipp64f *pOldest, Ipp64f *pAverage, Ipp64f amount, int len),                              \
      (pNewest, pOldest, pAverage, amount, len))                                                                       \
    X(IppStatus, sonvexDeinterleave_16s32f, (const Ipp8u *pSrc, int channels, int len, Ipp32f *pDst, int dstStep),     \
      (pSrc, channels, len, pDst, dstStep))                                                                            \
    X(IppStatus, sonvexDeinterleave_24s32f, (const Ipp8u *pSrc, int channels, int len, Ipp32f *pDst, int dstStep),     \
      (pSrc, channels, len, pDst, dstStep))                                                                            \
    X(IppStatus, sonvexDeinterleave_32s32f, (const Ipp8u *pSrc, int channels, int len, Ipp32f *pDst, int dstStep),     \
      (pSrc, channels, len, pDst, dstStep))                                                                            \
    X(IppStatus, sonvexDeinterleave_32f,                                                                               \
      (const Ipp8u *pSrc, int channels, int len, Ipp32f *pDst, int dstStep, int *pReplaced),                           \
      (pSrc, channels, len, pDst, dstStep, pReplaced))                                                                 \
    X(int, sonvexKernelLevel, (), ())
