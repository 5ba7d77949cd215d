// Vector operations, value by value.
#include <stddef.h>
#include <stdint.h>

#ifdef __SSE2__
#include <immintrin.h>
#endif

#include "kernels/loops/CpuLevelKernels.h"
#include "kernels/loops/Vector.h"

namespace kernels::KERNEL_LEVEL {
namespace {

constexpr int largestCachedLength = 262144; // floats; a longer fill would only push other data out of the caches

IppStatus check(const void *a, const void *b, int len) {
    if (a == nullptr || b == nullptr) {
        return ippStsNullPtrErr;
    }
    return len <= 0 ? ippStsSizeErr : ippStsNoErr;
}

#ifdef __SSE2__
/// Fills past the caches. Returns how many values that were.
ptrdiff_t setUncached(Ipp32f val, Ipp32f *dst, ptrdiff_t len) {
    ptrdiff_t n = 0;
    for (; (reinterpret_cast<uintptr_t>(dst + n) & 15U) != 0; ++n) {
        dst[n] = val;
    }
    const __m128 vector = _mm_set1_ps(val);
    for (; n + 16 <= len; n += 16) {
        _mm_stream_ps(dst + n, vector);
        _mm_stream_ps(dst + n + 4, vector);
        _mm_stream_ps(dst + n + 8, vector);
        _mm_stream_ps(dst + n + 12, vector);
    }
    _mm_sfence();
    return n;
}
#endif

} // namespace

IppStatus ippsSet_32f(Ipp32f val, Ipp32f *pDst, int len) {
    const IppStatus status = check(pDst, pDst, len);
    if (status != ippStsNoErr) {
        return status;
    }
    ptrdiff_t n = 0;
#ifdef __SSE2__
    if (len > largestCachedLength && (reinterpret_cast<uintptr_t>(pDst) & 3U) == 0) {
        n = setUncached(val, pDst, len);
    }
#endif
    const Floats vector = broadcast(val);
    for (; n + floatLanes <= len; n += floatLanes) {
        store(pDst + n, vector);
    }
    for (; n < len; ++n) {
        pDst[n] = val;
    }
    return ippStsNoErr;
}

IppStatus ippsMul_32f_I(const Ipp32f *pSrc, Ipp32f *pSrcDst, int len) {
    const IppStatus status = check(pSrc, pSrcDst, len);
    if (status != ippStsNoErr) {
        return status;
    }
    ptrdiff_t n = 0;
    for (; n + 2 * floatLanes <= len; n += 2 * floatLanes) {
        const Floats first = load(pSrcDst + n) * load(pSrc + n);
        const Floats second = load(pSrcDst + n + floatLanes) * load(pSrc + n + floatLanes);
        store(pSrcDst + n, first);
        store(pSrcDst + n + floatLanes, second);
    }
    for (; n < len; ++n) {
        pSrcDst[n] *= pSrc[n];
    }
    return ippStsNoErr;
}

IppStatus ippsSqr_64f(const Ipp64f *pSrc, Ipp64f *pDst, int len) {
    const IppStatus status = check(pSrc, pDst, len);
    if (status != ippStsNoErr) {
        return status;
    }
    ptrdiff_t n = 0;
    for (; n + 2 * doubleLanes <= len; n += 2 * doubleLanes) {
        const Doubles first = load(pSrc + n);
        const Doubles second = load(pSrc + n + doubleLanes);
        store(pDst + n, first * first);
        store(pDst + n + doubleLanes, second * second);
    }
    for (; n < len; ++n) {
        pDst[n] = pSrc[n] * pSrc[n];
    }
    return ippStsNoErr;
}

IppStatus ippsPowerSpectr_32fc(const Ipp32fc *pSrc, Ipp32f *pDst, int len) {
    const IppStatus status = check(pSrc, pDst, len);
    if (status != ippStsNoErr) {
        return status;
    }
    const float *const values = reinterpret_cast<const float *>(pSrc);
    ptrdiff_t n = 0;
    for (; n + floatLanes <= len; n += floatLanes) {
        Floats re;
        Floats im;
        deinterleave(load(values + 2 * n), load(values + 2 * n + floatLanes), re, im);
        store(pDst + n, re * re + im * im);
    }
    for (; n < len; ++n) {
        pDst[n] = pSrc[n].re * pSrc[n].re + pSrc[n].im * pSrc[n].im;
    }
    return ippStsNoErr;
}

IppStatus ippsConjCcs_32fc_I(Ipp32fc *pSrcDst, int lenDst) {
    const IppStatus status = check(pSrcDst, pSrcDst, lenDst);
    if (status != ippStsNoErr) {
        return status;
    }
    float *const values = reinterpret_cast<float *>(pSrcDst);
    const ptrdiff_t end = (static_cast<ptrdiff_t>(lenDst) + 1) / 2; // of the values that have a mirror image
    float *mirror = values + 2 * static_cast<ptrdiff_t>(lenDst);
    ptrdiff_t k = 1;
    for (; k + floatLanes <= end; k += floatLanes) {
        const ReversedPairs pairs = reversePairs(load(values + 2 * k), load(values + 2 * k + floatLanes));
        store(mirror - 2 * (k + floatLanes - 1), conjugatePairs(pairs.first));
        store(mirror - 2 * (k + floatLanes - 1) + floatLanes, conjugatePairs(pairs.second));
    }
    for (; k < end; ++k) {
        pSrcDst[lenDst - k] = {pSrcDst[k].re, -pSrcDst[k].im};
    }
    return ippStsNoErr;
}

} // namespace kernels::KERNEL_LEVEL
