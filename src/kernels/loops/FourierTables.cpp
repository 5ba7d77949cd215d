// The making of a transform's tables: its method, which follows from the order, and what the passes read.
#include <math.h>
#include <stddef.h>

#include "kernels/loops/Alignment.h"
#include "kernels/loops/CpuLevelKernels.h"
#include "kernels/loops/FourierLanes.h"
#include "kernels/loops/FourierSteps.h"
#include "kernels/loops/FourierTables.h"

namespace kernels::KERNEL_LEVEL {
namespace {

constexpr int highestOrder = 29;
constexpr int firstOrderWithInitBuffer = 11;
constexpr int highestFlatOrder = 14; // above, a pass over the whole leaves the second-level cache
constexpr double pi = 3.14159265358979323846;

int floorOfLog2(int value) {
    return 31 - __builtin_clz(static_cast<unsigned>(value));
}

FourierMethod methodOf(int order) {
    constexpr int firstFlatOrder = floatLanes == 8 ? 8 : 7; // from there on a row has at least two blocks
    if (order < 5) {
        return FourierMethod::Scalar;
    }
    if (order < firstFlatOrder) {
        return FourierMethod::Small;
    }
    if (order <= highestFlatOrder) {
        return FourierMethod::Flat;
    }
    return order < 29 ? FourierMethod::Blocked : FourierMethod::Halved;
}

/// e^(-2 pi i turns / whole), 0 <= turns < whole: exact on the axes, symmetric, and accurate for any amount of turns.
Complex<float> rootOfUnity(long long turns, long long whole) {
    const long long eighths = 8 * turns / whole;
    const long long rest = 8 * turns - eighths * whole; // behind the octant's begin, in 1/8 of a step
    const bool falling = (eighths & 1) != 0;
    const double angle = 2 * pi * static_cast<double>(falling ? whole - rest : rest) / (8 * static_cast<double>(whole));
    const double c = cos(angle);
    const double s = sin(angle);
    const double along = falling ? s : c; // seen from the begin of the quadrant
    const double across = falling ? c : s;
    switch (eighths / 2) {
    case 0:
        return {static_cast<float>(along), static_cast<float>(-across)};
    case 1:
        return {static_cast<float>(-across), static_cast<float>(-along)};
    case 2:
        return {static_cast<float>(-along), static_cast<float>(across)};
    default:
        return {static_cast<float>(across), static_cast<float>(along)};
    }
}

/// Hands out the floats behind the header. Without memory it only counts them.
class TableMemory {
public:
    explicit TableMemory(float *memory) : memory(memory) {}

    /// The next values of a table, which the caller fills if writing().
    float *take(long floats) {
        float *const here = writing() ? memory + used : nullptr;
        used += alignUp(static_cast<size_t>(floats), alignment / sizeof(float));
        return here;
    }

    bool writing() const { return memory != nullptr; }
    size_t floats() const { return used; }

private:
    float *memory;
    size_t used = 0;
};

void putPair(float *&to, Complex<float> value) {
    *to++ = value.re;
    *to++ = value.im;
}

/// One block of factors, scaled: e^(-2 pi i turns(lane) / whole), where turns = (start + lane) * step.
template <class V>
void putBlockOfRoots(float *&to, long long start, long long step, long long whole, float scale) {
    constexpr int L = Lanes<V>::amount;
    for (int lane = 0; lane < L; ++lane) {
        const Complex<float> root = rootOfUnity((start + Lanes<V>::order[lane]) * step % whole, whole);
        to[lane] = scale * root.re;
        to[lane + L] = scale * root.im;
    }
    to += 2 * L;
}

/// Radices 8 and 4 whose product is 2^bits (bits not 1), the eights first.
void compose(FourierChain &chain, int bits) {
    const int fours = (3 - bits % 3) % 3;
    for (int left = bits; left > 0; left -= left > 2 * fours ? 3 : 2) {
        chain.radix[chain.passes++] = left > 2 * fours ? 8 : 4;
    }
}

/// The factors of a chain's passes, from the given pass on but for the last.
void addFactors(TableMemory &memory, FourierChain &chain, int first, int rest) {
    for (int pass = first; pass < chain.passes - 1; ++pass) {
        const int radix = chain.radix[pass];
        const int m = rest / radix;
        float *to = memory.take(2 * m * (radix - 1));
        chain.factors[pass] = to;
        for (int p = 0; memory.writing() && p < m; ++p) {
            for (long long k = 1; k < radix; ++k) {
                putPair(to, rootOfUnity(p * k % rest, rest));
            }
        }
        rest = m;
    }
}

/// The factors of a first pass over interleaved values.
template <class V>
const float *addFirstFactors(TableMemory &memory, int length, int radix) {
    const int m = length / radix;
    float *to = memory.take(2 * m * (radix - 1));
    const float *const begin = to;
    for (int p = 0; memory.writing() && p < m; p += Lanes<V>::amount) {
        for (int k = 1; k < radix; ++k) {
            putBlockOfRoots<V>(to, p, k, length, 1);
        }
    }
    return begin;
}

/// h e^(-pi i k / M) for the left half of the blocks, all rows of a block together, then for the column in the middle.
template <class V>
const float *addRecombination(TableMemory &memory, int length, int radix, float h) {
    constexpr int L = Lanes<V>::amount;
    const int s = length / radix;
    const bool oneBlock = s == L;
    const int rows = oneBlock ? radix / 2 : radix;
    float *to = memory.take(length + 2 * L + 2 * radix);
    const float *const begin = to;
    if (memory.writing()) {
        for (int q = 0; q < (oneBlock ? L : s / 2); q += L) {
            for (int row = 0; row < rows; ++row) {
                putBlockOfRoots<V>(to, q + s * row, 1, 2LL * length, h);
            }
        }
        for (int row = 0; !oneBlock && row < radix; ++row) {
            const Complex<float> root = rootOfUnity(s / 2 + s * row, 2LL * length);
            putPair(to, {h * root.re, h * root.im});
        }
    }
    return begin;
}

void planScalar(IppsFFTSpec_R_32f &tables, TableMemory &memory, int length) {
    float *to = memory.take(length + 2);
    tables.recombination = to;
    for (int k = 0; memory.writing() && k <= length / 2; ++k) {
        const Complex<float> root = rootOfUnity(k, 2LL * length);
        putPair(to, {tables.half * root.re, tables.half * root.im});
    }
}

template <class V>
void planSmall(IppsFFTSpec_R_32f &tables, TableMemory &memory, int length) {
    const int last = smallLastRadix(tables.order);
    tables.chain.factors[0] = addFirstFactors<V>(memory, length, length / last);
    tables.recombination = addRecombination<V>(memory, length, last, tables.half);
}

void planFlat(IppsFFTSpec_R_32f &tables, TableMemory &memory, int length) {
    const int bits = tables.order - 1 - 2;
    tables.chain.length = length;
    tables.chain.radix[tables.chain.passes++] = bits == 4 ? 4 : 8;
    compose(tables.chain, bits == 4 ? 2 : bits - 3);
    tables.chain.radix[tables.chain.passes++] = 4;
    const int first = tables.chain.radix[0];
    tables.chain.factors[0] = addFirstFactors<Floats>(memory, length, first);
    addFactors(memory, tables.chain, 1, length / first);
    tables.recombination = addRecombination<Floats>(memory, length, 4, tables.half);
    tables.bufferSize = static_cast<int>(2 * 2 * sizeof(float)) * length; // two areas, see runPasses
}

void planBlocked(IppsFFTSpec_R_32f &tables, TableMemory &memory, int length) {
    constexpr int L = floatLanes;
    const int bits = floorOfLog2(length);
    tables.chain.length = 1 << bits / 2;
    compose(tables.chain, bits / 2);
    tables.rows.length = length / tables.chain.length;
    compose(tables.rows, bits - bits / 2 - 2);
    tables.rows.radix[tables.rows.passes++] = 4;
    addFactors(memory, tables.chain, 0, tables.chain.length);
    addFactors(memory, tables.rows, 0, tables.rows.length);

    const int R = tables.chain.length;
    const int C = tables.rows.length;
    float *coarse = memory.take(2L * R * (C / L));
    float *fine = memory.take(2L * L * R);
    float *lane = memory.take(2L * R);
    float *row = memory.take(2L * C);
    tables.coarseTurn = coarse;
    tables.fineTurn = fine;
    tables.laneFactors = lane;
    tables.rowFactors = row;
    if (memory.writing()) {
        for (long long c = 0; c < C; c += L) {
            for (int r = 0; r < R; ++r) {
                putPair(coarse, rootOfUnity(c * r % length, length));
            }
        }
        for (int r = 0; r < R; ++r) {
            putBlockOfRoots<Floats>(fine, 0, r, length, 1);
        }
        for (int r = 0; r < R; r += L) {
            putBlockOfRoots<Floats>(lane, r, 1, 2LL * length, tables.half);
        }
        for (int b = 0; b < C / 4; ++b) {
            for (int k = 0; k < 4; ++k) {
                putPair(row, rootOfUnity(b + C / 4 * k, 2LL * C));
            }
        }
    }
    tables.bufferSize = static_cast<int>(sizeof(float)) * static_cast<int>(areaOfTiles(R, C) + scratchOfBlocks(R, C));
}

void planHalved(IppsFFTSpec_R_32f &tables, TableMemory &memory, int length) {
    planBlocked(tables, memory, length / 2);
    const int fineBits = halvedFineBits(tables.order);
    const long fines = 1L << fineBits;
    const long samples = 2L * length;
    const long coarses = samples / 8 / fines + 1;
    float *fine = memory.take(2 * fines);
    float *coarse = memory.take(2 * coarses);
    tables.halvedFine = fine;
    tables.halvedCoarse = coarse;
    for (long k = 0; memory.writing() && k < fines; ++k) {
        putPair(fine, rootOfUnity(k, samples));
    }
    for (long k = 0; memory.writing() && k < coarses; ++k) {
        putPair(coarse, rootOfUnity(k * fines, samples));
    }
}

/// Makes tables whose order and scale are set. Returns how many floats they take behind the header.
size_t plan(IppsFFTSpec_R_32f &tables, float *floats) {
    TableMemory memory(floats);
    const int length = tables.order == 0 ? 1 : 1 << (tables.order - 1); // order 0 uses no table
    tables.method = methodOf(tables.order);
    switch (tables.method) {
    case FourierMethod::Scalar:
        planScalar(tables, memory, length);
        break;
    case FourierMethod::Small:
        if (tables.order <= highestOrderOfQuads) {
            planSmall<Quads>(tables, memory, length);
        } else {
            planSmall<Floats>(tables, memory, length);
        }
        break;
    case FourierMethod::Flat:
        planFlat(tables, memory, length);
        break;
    case FourierMethod::Blocked:
        planBlocked(tables, memory, length);
        break;
    case FourierMethod::Halved:
        planHalved(tables, memory, length);
        break;
    }
    if (tables.bufferSize > 0) {
        tables.bufferSize += static_cast<int>(alignment);
    }
    return memory.floats();
}

bool isFlag(int flag) {
    return flag == IPP_FFT_DIV_FWD_BY_N || flag == IPP_FFT_DIV_INV_BY_N || flag == IPP_FFT_DIV_BY_SQRTN ||
           flag == IPP_FFT_NODIV_BY_ANY;
}

constexpr size_t headerBytes = alignUp(sizeof(IppsFFTSpec_R_32f), alignment);

} // namespace

IppStatus ippsFFTGetSize_R_32f(int order, int flag, int /*hint*/, int *pSpecSize, int *pSpecBufferSize,
                               int *pBufferSize) {
    if (order < 0 || order > highestOrder) {
        return ippStsFftOrderErr;
    }
    if (pSpecSize == nullptr || pSpecBufferSize == nullptr || pBufferSize == nullptr) {
        return ippStsNullPtrErr;
    }
    if (!isFlag(flag)) {
        return ippStsFftFlagErr;
    }
    IppsFFTSpec_R_32f tables{};
    tables.order = order;
    *pSpecSize = static_cast<int>(headerBytes + alignment + sizeof(float) * plan(tables, nullptr));
    // The tables need no scratch; but a caller that allocates what it is told must have a pointer to give.
    *pSpecBufferSize = order < firstOrderWithInitBuffer ? 0 : static_cast<int>(alignment);
    *pBufferSize = tables.bufferSize;
    return ippStsNoErr;
}

IppStatus ippsFFTInit_R_32f(IppsFFTSpec_R_32f **ppSpec, int order, int flag, int hint, Ipp8u *pSpec,
                            Ipp8u *pSpecBuffer) {
    if (ppSpec == nullptr || pSpec == nullptr) {
        return ippStsNullPtrErr;
    }
    if (order < 0 || order > highestOrder) {
        return ippStsFftOrderErr;
    }
    if (!isFlag(flag)) {
        return ippStsFftFlagErr;
    }
    if (order >= firstOrderWithInitBuffer && pSpecBuffer == nullptr) {
        return ippStsNullPtrErr;
    }
    Ipp8u *const aligned = alignUp(pSpec, alignment);
    auto *const tables = reinterpret_cast<IppsFFTSpec_R_32f *>(aligned);
    *tables = IppsFFTSpec_R_32f{};
    tables->id = fourierTablesId;
    tables->order = order;
    tables->hint = hint;
    tables->lanes = floatLanes;
    tables->scaleFactor = 1;
    const double samples = static_cast<double>(1LL << order);
    if (flag == IPP_FFT_DIV_BY_SQRTN) {
        tables->scaleFactor = static_cast<float>(1.0 / sqrt(samples));
    } else if (flag != IPP_FFT_NODIV_BY_ANY) {
        tables->scaleFactor = 1.0F / static_cast<float>(samples);
    }
    tables->scaleForward = flag == IPP_FFT_DIV_FWD_BY_N || flag == IPP_FFT_DIV_BY_SQRTN ? 1 : 0;
    tables->scaleInverse = flag == IPP_FFT_DIV_INV_BY_N || flag == IPP_FFT_DIV_BY_SQRTN ? 1 : 0;
    tables->half = tables->scaleForward != 0 ? 0.5F * tables->scaleFactor : 0.5F;
    plan(*tables, reinterpret_cast<float *>(aligned + headerBytes));
    *ppSpec = tables;
    return ippStsNoErr;
}

} // namespace kernels::KERNEL_LEVEL
