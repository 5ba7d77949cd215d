// The forward transform of real samples, by the method that its tables name.
#include "kernels/loops/Alignment.h"
#include "kernels/loops/CpuLevelKernels.h"
#include "kernels/loops/FourierBlocks.h"
#include "kernels/loops/FourierPasses.h"
#include "kernels/loops/FourierSteps.h"
#include "kernels/loops/FourierTables.h"

namespace kernels::KERNEL_LEVEL {
namespace {

constexpr int L = floatLanes;

template <int M>
void transformScalar(const float *src, float *dst, const float *factors, float h) {
    Complex<float> x[M];
    for (int k = 0; k < M; ++k) {
        x[k] = {src[2 * k], src[2 * k + 1]};
    }
    if constexpr (M > 1) {
        Butterfly<M>::run(x);
    }
    for (int k = 0; k <= M / 2; ++k) {
        Complex<float> atK;
        Complex<float> atMirror;
        recombine(x[k], x[(M - k) % M], Complex<float>{factors[2 * k], factors[2 * k + 1]}, h, atK, atMirror);
        dst[2 * (M - k)] = atMirror.re;
        dst[2 * (M - k) + 1] = atMirror.im;
        dst[2 * k] = atK.re;
        dst[2 * k + 1] = atK.im;
    }
    dst[1] = 0;
    dst[2 * M + 1] = 0;
}

void transformScalar(const IppsFFTSpec_R_32f &tables, const float *src, float *dst) {
    switch (tables.order) {
    case 0:
        dst[0] = 2 * tables.half * src[0];
        dst[1] = 0;
        break;
    case 1:
        transformScalar<1>(src, dst, tables.recombination, tables.half);
        break;
    case 2:
        transformScalar<2>(src, dst, tables.recombination, tables.half);
        break;
    case 3:
        transformScalar<4>(src, dst, tables.recombination, tables.half);
        break;
    default:
        transformScalar<8>(src, dst, tables.recombination, tables.half);
        break;
    }
}

template <class V, int Order>
void transformSmall(const IppsFFTSpec_R_32f &tables, const float *src, float *dst) {
    static_assert((Order <= highestOrderOfQuads) == (Lanes<V>::amount == 4), "the tables are made for these lanes");
    constexpr int Last = smallLastRadix(Order);
    constexpr int First = (1 << (Order - 1)) / Last;
    float between[2 * First * Last] __attribute__((aligned(64)));
    firstPass<V, First>(src, between, Last, tables.chain.factors[0]);
    lastPassOfOneBlock<V, Last>(between, dst, tables.recombination, tables.half);
}

void transformSmall(const IppsFFTSpec_R_32f &tables, const float *src, float *dst) {
    switch (tables.order) {
    case 5:
        transformSmall<Quads, 5>(tables, src, dst);
        break;
    case 6:
        transformSmall<Quads, 6>(tables, src, dst);
        break;
    default:
        if constexpr (L == 8) {
            transformSmall<Floats, 7>(tables, src, dst);
        }
        break;
    }
}

void runMiddlePass(int radix, const float *src, float *dst, int m, int s, const float *factors) {
    if (m == 1) {
        if (radix == 8) {
            middlePass<Floats, 8, false>(src, dst, m, s, factors);
        } else {
            middlePass<Floats, 4, false>(src, dst, m, s, factors);
        }
    } else if (radix == 8) {
        middlePass<Floats, 8, true>(src, dst, m, s, factors);
    } else {
        middlePass<Floats, 4, true>(src, dst, m, s, factors);
    }
}

/// Runs the passes behind the first one up to `end`, to and fro between two areas. Returns the area of the results.
const float *runPasses(const FourierChain &chain, int end, float *from, float *to, int m, int s) {
    for (int pass = 1; pass < end; ++pass) {
        const int radix = chain.radix[pass];
        m /= radix;
        runMiddlePass(radix, from, to, m, s, chain.factors[pass]);
        s *= radix;
        float *const done = to;
        to = from;
        from = done;
    }
    return from;
}

void transformFlat(const IppsFFTSpec_R_32f &tables, const float *src, float *dst, float *work) {
    const FourierChain &chain = tables.chain;
    const int s = chain.radix[0];
    const int m = chain.length / s;
    if (s == 8) {
        firstPass<Floats, 8>(src, work, m, chain.factors[0]);
    } else if constexpr (L == 4) {
        firstPass<Floats, 4>(src, work, m, chain.factors[0]);
    }
    const float *const done = runPasses(chain, chain.passes - 1, work, work + 2L * chain.length, m, s);
    lastPass<Floats>(done, dst, chain.length / 4, tables.recombination, tables.half);
}

/// Transforms as many columns of R values as are done at a time. Returns where, of the two scratch areas, they are.
const float *transformColumns(const FourierChain &chain, const float *src, long stride, float *scratch) {
    const int radix = chain.radix[0];
    const int m = chain.length / radix;
    if (radix == 8) {
        columnPass<Floats, 8>(src, stride, blockColumns, scratch, m, chain.factors[0]);
    } else {
        columnPass<Floats, 4>(src, stride, blockColumns, scratch, m, chain.factors[0]);
    }
    return runPasses(chain, chain.passes, scratch, scratch + scratchOfColumns(chain.length), m, blockColumns * radix);
}

/// All passes but the last of L transforms of C values.
void transformRows(const FourierChain &chain, const float *tile, float *dst, float *scratch) {
    int m = chain.length;
    int s = L;
    const float *from = tile;
    for (int pass = 0; pass < chain.passes - 1; ++pass) {
        const int radix = chain.radix[pass];
        const bool isLast = pass == chain.passes - 2;
        float *const to = isLast ? dst : scratch + (pass % 2 == 0 ? 0 : scratchOfRows(chain.length));
        m /= radix;
        runMiddlePass(radix, from, to, m, s, chain.factors[pass]);
        s *= radix;
        from = to;
    }
}

void transformBlocked(const IppsFFTSpec_R_32f &tables, const float *src, float *dst, float *work) {
    const int R = tables.chain.length;
    const int C = tables.rows.length;
    const long tile = 2L * L * C;
    const long stride = 2L * R; // of the rows of the result
    float *const tiles = work;
    float *const scratch = work + areaOfTiles(R, C);
    for (int c = 0; c < C; c += blockColumns) {
        const float *const columns = transformColumns(tables.chain, src + 2L * c, 2L * C, scratch);
        turnPass<Floats>(columns, blockColumns, tiles + 2L * L * c, R, tile, tables.coarseTurn + 2L * R * (c / L),
                         tables.fineTurn);
    }

    const int area = scratchOfRows(C);
    float *left = scratch;
    float *right = scratch + area;
    float *before = scratch + 2L * area;
    float *const rest = scratch + 3L * area;
    const int blocks = R / L;
    for (int block = 0; block < blocks / 2; ++block) {
        transformRows(tables.rows, tiles + block * tile, left, rest);
        transformRows(tables.rows, tiles + (blocks - 1 - block) * tile, right, rest);
        finishPair<Floats>({left, right, block == 0 ? nullptr : before}, C / 4, dst + 2L * L * block,
                           dst + stride - 2L * (L * (block + 1) - 1), stride, tables.laneFactors + 2L * L * block,
                           tables.rowFactors, tables.half);
        float *const done = right;
        right = before;
        before = done;
    }
    finishMiddle<Floats>(before, C / 4, dst + stride / 2, stride, tables.laneFactors + stride / 2, tables.rowFactors,
                         tables.half);
    dst[1] = 0;
    dst[stride * C + 1] = 0;
}

/// From the transforms of the even samples (bins 0 to quarter) and of the odd ones (behind them) to that of all.
void joinHalves(const IppsFFTSpec_R_32f &tables, float *bins, long quarter, float lastEven) {
    const int fineBits = halvedFineBits(tables.order);
    const long fineMask = (1L << fineBits) - 1;
    const auto at = [bins](long k) { return Complex<float>{bins[2 * k], bins[2 * k + 1]}; };
    const auto put = [bins](long k, Complex<float> value) {
        bins[2 * k] = value.re;
        bins[2 * k + 1] = value.im;
    };
    const Complex<float> even0 = at(0);
    const Complex<float> odd0 = at(quarter);
    const float lastOdd = bins[4 * quarter];
    put(0, {even0.re + odd0.re, 0});
    put(2 * quarter, {even0.re - odd0.re, 0});
    put(quarter, {lastEven, -lastOdd});
    for (long k = 1; k <= quarter / 2; ++k) {
        // A bin and its mirror image among the quarter's bins: the four places that are read are those written.
        const Complex<float> w =
            Complex<float>{tables.halvedFine[2 * (k & fineMask)], tables.halvedFine[2 * (k & fineMask) + 1]} *
            Complex<float>{tables.halvedCoarse[2 * (k >> fineBits)], tables.halvedCoarse[2 * (k >> fineBits) + 1]};
        const Complex<float> mirroredW{-w.im, -w.re}; // e^(-2 pi i (quarter - k) / N)
        const Complex<float> even = at(k);
        const Complex<float> odd = w * at(quarter + k);
        const Complex<float> mirroredEven = at(quarter - k);
        const Complex<float> mirroredOdd = mirroredW * at(2 * quarter - k);
        const Complex<float> difference = even - odd;
        const Complex<float> mirroredDifference = mirroredEven - mirroredOdd;
        put(k, even + odd);
        put(2 * quarter - k, {difference.re, -difference.im});
        put(quarter - k, mirroredEven + mirroredOdd);
        put(quarter + k, {mirroredDifference.re, -mirroredDifference.im});
    }
}

void transformHalved(const IppsFFTSpec_R_32f &tables, const float *src, float *dst, float *work) {
    const long half = 1L << (tables.order - 1);
    for (long n = 0; n < half; ++n) {
        // NOLINTNEXTLINE(clang-analyzer-core.NullDereference): this method has a bufferSize, so there is a buffer
        work[n] = src[2 * n + 1];
    }
    for (long n = 0; n < half; ++n) {
        dst[n] = src[2 * n];
    }
    for (long n = 0; n < half; ++n) {
        dst[half + n] = work[n];
    }
    // The last bin of the even samples falls on the first two odd samples.
    const float odd0 = dst[half];
    const float odd1 = dst[half + 1];
    transformBlocked(tables, dst, dst, work);
    const float lastEven = dst[half];
    dst[half] = odd0;
    dst[half + 1] = odd1;
    transformBlocked(tables, dst + half, dst + half, work);
    joinHalves(tables, dst, half / 2, lastEven);
}

} // namespace

IppStatus ippsFFTFwd_RToCCS_32f(const Ipp32f *pSrc, Ipp32f *pDst, const IppsFFTSpec_R_32f *pSpec, Ipp8u *pBuffer) {
    if (pSpec == nullptr) {
        return ippStsNullPtrErr;
    }
    if (pSpec->id != fourierTablesId || pSpec->lanes != L) {
        return ippStsContextMatchErr;
    }
    if (pSrc == nullptr || pDst == nullptr || (pBuffer == nullptr && pSpec->bufferSize > 0)) {
        return ippStsNullPtrErr;
    }
    float *const work = reinterpret_cast<float *>(alignUp(pBuffer, alignment));
    switch (pSpec->method) {
    case FourierMethod::Scalar:
        transformScalar(*pSpec, pSrc, pDst);
        break;
    case FourierMethod::Small:
        transformSmall(*pSpec, pSrc, pDst);
        break;
    case FourierMethod::Flat:
        transformFlat(*pSpec, pSrc, pDst, work);
        break;
    case FourierMethod::Blocked:
        transformBlocked(*pSpec, pSrc, pDst, work);
        break;
    case FourierMethod::Halved:
        transformHalved(*pSpec, pSrc, pDst, work);
        break;
    }
    return ippStsNoErr;
}

} // namespace kernels::KERNEL_LEVEL
