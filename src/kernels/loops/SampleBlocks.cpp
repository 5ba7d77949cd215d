// The samples of an audio frame taken apart, in blocks of 4 positions by 4 or 8 channels that are transposed in
// registers. Where a frame is no multiple of a block, the last one begins earlier and writes some samples twice: that
// takes less time than a way of its own for what is left.
#include <limits.h>
#include <stddef.h>

#include "kernels/loops/CpuLevelKernels.h"
#include "kernels/loops/SampleCodes.h"

namespace kernels::KERNEL_LEVEL {
namespace {

constexpr ptrdiff_t blockLength = 4; // positions

/// Where a block has to begin that would reach beyond the end from here.
SONVEX_INLINE ptrdiff_t within(ptrdiff_t begin, ptrdiff_t length, ptrdiff_t end) {
    return begin < end - length ? begin : end - length;
}

/// The planes that the samples go to.
struct Planes {
    float *first;
    ptrdiff_t step;

    float *at(ptrdiff_t channel, ptrdiff_t position) const { return first + channel * step + position; }
};

/// Whole numbers as floats of full scale 1.
template <class Codes>
struct Scaling {
    SONVEX_INLINE auto convert(Codes codes) { return toNumbers(codes) * 0x1p-31F; }
    SONVEX_INLINE bool hasReplaced() { return false; }
};

/// Floats as they are, and 0 for those that are not finite.
template <class Codes>
struct Validation {
    __attribute__((always_inline)) auto convert(Codes codes) {
        const Codes invalid = maskOfInvalid(codes);
        replaced |= invalid;
        return asFloats(codes & ~invalid);
    }
    __attribute__((always_inline)) bool hasReplaced() const { return isAnySet(replaced); }

    Codes replaced{};
};

SONVEX_INLINE void put(Quads values, float *to) {
    __builtin_memcpy(to, &values, sizeof values);
}

/// 4 values for each of 4 planes, from the first one's address on.
SONVEX_INLINE void put(Quads a, Quads b, Quads c, Quads d, float *to, ptrdiff_t step) {
    put(a, to);
    put(b, to + step);
    put(c, to + 2 * step);
    put(d, to + 3 * step);
}

#ifdef __AVX2__
/// As with Quads, and the upper halves to the 4 planes behind these.
SONVEX_INLINE void put(Floats a, Floats b, Floats c, Floats d, float *to, ptrdiff_t step) {
    put(_mm256_castps256_ps128(a), _mm256_castps256_ps128(b), _mm256_castps256_ps128(c), _mm256_castps256_ps128(d), to,
        step);
    put(_mm256_extractf128_ps(a, 1), _mm256_extractf128_ps(b, 1), _mm256_extractf128_ps(c, 1),
        _mm256_extractf128_ps(d, 1), to + 4 * step, step);
}
#endif

/// Converts one block, with as many channels as there are codes in a vector.
/// @param row bytes from one position to the next
template <int bytes, class Codes, class Conversion>
SONVEX_INLINE void convertBlock(const Ipp8u *from, ptrdiff_t row, float *to, ptrdiff_t step, Conversion &conversion) {
    Codes codes[blockLength];
    Samples<bytes>::get(from, codes[0]);
    Samples<bytes>::get(from + row, codes[1]);
    Samples<bytes>::get(from + 2 * row, codes[2]);
    Samples<bytes>::get(from + 3 * row, codes[3]);
    auto a = conversion.convert(codes[0]);
    auto b = conversion.convert(codes[1]);
    auto c = conversion.convert(codes[2]);
    auto d = conversion.convert(codes[3]);
    transposeFours(a, b, c, d);
    put(a, b, c, d, to, step);
}

// Each of the following tells whether samples have been replaced.

template <template <class> class Conversion, int bytes>
bool oneByOne(const Ipp8u *src, ptrdiff_t channels, ptrdiff_t len, Planes planes) {
    Conversion<uint32_t> conversion;
    for (ptrdiff_t position = 0; position < len; ++position) {
        for (ptrdiff_t channel = 0; channel < channels; ++channel) {
            uint32_t code = 0;
            Samples<bytes>::get(src, code);
            asm("" : "+r"(code)); // vectors of the compiler's own would take longer to set up than these few samples
            *planes.at(channel, position) = conversion.convert(code);
            src += bytes;
        }
    }
    return conversion.hasReplaced();
}

template <template <class> class Conversion, int bytes>
bool oneChannel(const Ipp8u *src, ptrdiff_t len, Planes planes) {
    Conversion<Codes4> conversion;
    for (ptrdiff_t begin = 0; begin < len; begin += blockLength) {
        const ptrdiff_t position = within(begin, blockLength, len);
        Codes4 codes;
        Samples<bytes>::get(src + position * bytes, codes);
        put(conversion.convert(codes), planes.at(0, position));
    }
    return conversion.hasReplaced();
}

template <template <class> class Conversion, int bytes>
bool twoChannels(const Ipp8u *src, ptrdiff_t len, Planes planes) {
    Conversion<Codes4> conversion;
    for (ptrdiff_t begin = 0; begin < len; begin += blockLength) {
        const ptrdiff_t position = within(begin, blockLength, len);
        const Ipp8u *const from = src + 2 * position * bytes;
        Codes4 front;
        Codes4 back;
        Samples<bytes>::get(from, front);
        Samples<bytes>::get(from + 4 * bytes, back);
        const Quads a = conversion.convert(front);
        const Quads b = conversion.convert(back);
        put(__builtin_shufflevector(a, b, 0, 2, 4, 6), planes.at(0, position));
        put(__builtin_shufflevector(a, b, 1, 3, 5, 7), planes.at(1, position));
    }
    return conversion.hasReplaced();
}

template <template <class> class Conversion, int bytes, class Codes>
bool inBlocks(const Ipp8u *src, ptrdiff_t channels, ptrdiff_t len, Planes planes) {
    constexpr ptrdiff_t width = sizeof(Codes) / sizeof(uint32_t);
    const ptrdiff_t row = channels * bytes;
    Conversion<Codes> conversion;
    for (ptrdiff_t first = 0; first < channels; first += width) {
        const ptrdiff_t channel = within(first, width, channels);
        const Ipp8u *const from = src + channel * bytes;
        float *const to = planes.at(channel, 0);
        for (ptrdiff_t begin = 0; begin < len; begin += blockLength) {
            const ptrdiff_t position = within(begin, blockLength, len);
            convertBlock<bytes, Codes>(from + position * row, row, to + position, planes.step, conversion);
        }
    }
    return conversion.hasReplaced();
}

template <template <class> class Conversion, int bytes>
SONVEX_INLINE bool deinterleave(const Ipp8u *src, ptrdiff_t channels, ptrdiff_t len, Planes planes) {
    if (len < blockLength || channels == 3) {
        return oneByOne<Conversion, bytes>(src, channels, len, planes);
    }
#ifdef __AVX2__
    if (channels >= 8) {
        return inBlocks<Conversion, bytes, Codes8>(src, channels, len, planes);
    }
#endif
    if (channels >= 4) {
        return inBlocks<Conversion, bytes, Codes4>(src, channels, len, planes);
    }
    return channels == 2 ? twoChannels<Conversion, bytes>(src, len, planes)
                         : oneChannel<Conversion, bytes>(src, len, planes);
}

int countInvalid(const Ipp8u *src, ptrdiff_t amount) {
    int count = 0;
    for (ptrdiff_t n = 0; n < amount; ++n) {
        uint32_t code = 0;
        Samples<4>::get(src + 4 * n, code);
        count += maskOfInvalid(code) != 0 ? 1 : 0;
    }
    return count;
}

SONVEX_INLINE IppStatus check(const void *src, int channels, int len, const void *dst, int dstStep) {
    if (src == nullptr || dst == nullptr) {
        return ippStsNullPtrErr;
    }
    if (channels <= 0 || len <= 0 || static_cast<long long>(channels) * len > INT_MAX) {
        return ippStsSizeErr;
    }
    return dstStep < len ? ippStsStepErr : ippStsNoErr;
}

template <int bytes>
SONVEX_INLINE IppStatus deinterleaveNumbers(const Ipp8u *src, int channels, int len, Ipp32f *dst, int dstStep) {
    const IppStatus status = check(src, channels, len, dst, dstStep);
    if (status == ippStsNoErr) {
        deinterleave<Scaling, bytes>(src, channels, len, {dst, dstStep});
    }
    return status;
}

} // namespace

IppStatus sonvexDeinterleave_16s32f(const Ipp8u *pSrc, int channels, int len, Ipp32f *pDst, int dstStep) {
    return deinterleaveNumbers<2>(pSrc, channels, len, pDst, dstStep);
}

IppStatus sonvexDeinterleave_24s32f(const Ipp8u *pSrc, int channels, int len, Ipp32f *pDst, int dstStep) {
    return deinterleaveNumbers<3>(pSrc, channels, len, pDst, dstStep);
}

IppStatus sonvexDeinterleave_32s32f(const Ipp8u *pSrc, int channels, int len, Ipp32f *pDst, int dstStep) {
    return deinterleaveNumbers<4>(pSrc, channels, len, pDst, dstStep);
}

IppStatus sonvexDeinterleave_32f(const Ipp8u *pSrc, int channels, int len, Ipp32f *pDst, int dstStep, int *pReplaced) {
    const IppStatus status = pReplaced == nullptr ? ippStsNullPtrErr : check(pSrc, channels, len, pDst, dstStep);
    if (status == ippStsNoErr) {
        const bool hasReplaced = deinterleave<Validation, 4>(pSrc, channels, len, {pDst, dstStep});
        *pReplaced = hasReplaced ? countInvalid(pSrc, static_cast<ptrdiff_t>(channels) * len) : 0;
    }
    return status;
}

} // namespace kernels::KERNEL_LEVEL
