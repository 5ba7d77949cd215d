// Powers in double precision and their moving average.
#include "kernels/loops/CpuLevelKernels.h"
#include "kernels/loops/Vector.h"

namespace kernels::KERNEL_LEVEL {
namespace {

double quotient(double dividend, double divisor) {
    return dividend / divisor;
}

Doubles quotient(Doubles dividend, double divisor) {
    return dividend / broadcast(divisor);
}

double product(double a, double b) {
    return a * b;
}

Doubles product(Doubles a, double b) {
    return a * broadcast(b);
}

/// Tells by the bits of a number, all those behind the exponent being 0.
bool isPowerOfTwo(double value) {
    unsigned long long bits = 0;
    __builtin_memcpy(&bits, &value, sizeof bits);
    return (bits << 12) == 0;
}

/// @param divide(difference) what a vector that comes or goes changes
template <class Divide>
SONVEX_INLINE void move(const double *newest, double *oldest, double *average, long len, Divide divide) {
    long n = 0;
    for (; n + doubleLanes <= len; n += doubleLanes) {
        const Doubles moved = load(average + n) + divide(load(newest + n) - load(oldest + n));
        store(average + n, moved);
        store(oldest + n, moved);
    }
    for (; n < len; ++n) {
        average[n] += divide(newest[n] - oldest[n]);
        oldest[n] = average[n];
    }
}

} // namespace

IppStatus sonvexScaledPower_32fc64f(const Ipp32fc *pSrc, Ipp32f factor, Ipp64f *pDst, int len) {
    if (pSrc == nullptr || pDst == nullptr) {
        return ippStsNullPtrErr;
    }
    if (len <= 0) {
        return ippStsSizeErr;
    }
    const float *const values = &pSrc->re;
    const Floats factors = broadcast(factor);
    long n = 0;
    for (; n + floatLanes <= len; n += floatLanes) {
        Floats re;
        Floats im;
        deinterleave(load(values + 2 * n), load(values + 2 * n + floatLanes), re, im);
        storeWidened(pDst + n, (re * re + im * im) * factors);
    }
    for (; n < len; ++n) {
        pDst[n] = static_cast<double>((pSrc[n].re * pSrc[n].re + pSrc[n].im * pSrc[n].im) * factor);
    }
    return ippStsNoErr;
}

IppStatus sonvexMoveAverage_64f(const Ipp64f *pNewest, Ipp64f *pOldest, Ipp64f *pAverage, Ipp64f amount, int len) {
    if (pNewest == nullptr || pOldest == nullptr || pAverage == nullptr) {
        return ippStsNullPtrErr;
    }
    if (len <= 0) {
        return ippStsSizeErr;
    }
    if (amount == 0) {
        return ippStsDivByZeroErr;
    }
    // Here the reciprocal is exact: a multiplication gives the same digits in a fraction of the time.
    if (isPowerOfTwo(amount)) {
        const double reciprocal = 1 / amount;
        move(pNewest, pOldest, pAverage, len, [=](auto change) { return product(change, reciprocal); });
    } else {
        move(pNewest, pOldest, pAverage, len, [=](auto change) { return quotient(change, amount); });
    }
    return ippStsNoErr;
}

} // namespace kernels::KERNEL_LEVEL
