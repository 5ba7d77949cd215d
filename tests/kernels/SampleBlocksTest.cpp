#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>
#include <utility>
#include <vector>

#include "CpuLevels.h"
#include "KernelMemory.h"
#include "kernels/kernels.h"

namespace {

using support::FencedMemory;

class SampleBlocks : public support::AtLevel {};
SONVEX_AT_ALL_LEVELS(SampleBlocks);

using Kernel = IppStatus (*)(const Ipp8u *, int, int, Ipp32f *, int);

template <Kernel kernel>
IppStatus replacingNothing(const Ipp8u *src, int channels, int len, Ipp32f *dst, int step, int *replaced) {
    const IppStatus status = kernel(src, channels, len, dst, step);
    *replaced = status == ippStsNoErr ? 0 : *replaced;
    return status;
}

struct Format {
    const char *name;
    unsigned bytes;
    IppStatus (*run)(const Ipp8u *, int, int, Ipp32f *, int, int *);
    std::vector<std::uint32_t> edges;
};

const Format formats[] = {
    {"16 bit", 2, replacingNothing<sonvexDeinterleave_16s32f>, {0, 1, 0x7FFF, 0x8000, 0x8001, 0xFFFF}},
    {"24 bit", 3, replacingNothing<sonvexDeinterleave_24s32f>, {0, 1, 0x7FFFFF, 0x800000, 0x800001, 0xFFFFFF}},
    // Codes between two floats, at the middle too, the greatest one, which becomes 1, and its like below 0.
    {"32 bit",
     4,
     replacingNothing<sonvexDeinterleave_32s32f>,
     {0, 1, 0x7FFFFFFF, 0x80000000, 0x80000001, 0xFFFFFFFF, 0x01000001, 0x01000003, 0x7FFFFFBF, 0x7FFFFFC0, 0x7FFFFFC1,
      0xFEFFFFFF, 0xFEFFFFFD, 0x8000003F, 0x80000040, 0x80000041, 0x80000042}},
    // Zeros, subnormals, the greatest, infinities, what is not a number, quiet and signalling.
    {"float",
     4,
     sonvexDeinterleave_32f,
     {0, 0x80000000, 1, 0x807FFFFF, 0x00800000, 0x3F800000, 0x7F7FFFFF, 0xFF7FFFFF, 0x7F800000, 0xFF800000, 0x7F800001,
      0x7FC00000, 0xFFFFFFFF, 0xFF800001}}};

/// The number that a code stands for; 0 for those that are no finite one, which are counted.
double valueOf(const Format &format, std::uint32_t code, int &replaced) {
    if (format.run != sonvexDeinterleave_32f) {
        const double range = std::ldexp(1, static_cast<int>(8 * format.bytes));
        return (code < range / 2 ? code : code - range) / (range / 2);
    }
    const auto exponent = static_cast<int>(code >> 23U & 0xFFU);
    const double fraction = code & 0x7FFFFFU;
    if (exponent == 0xFF) {
        ++replaced;
        return 0;
    }
    const double size = exponent == 0 ? std::ldexp(fraction, -149) : std::ldexp(fraction + 0x1p23, exponent - 150);
    return code >> 31U != 0 ? -size : size;
}

/// Takes a frame of random samples apart, all of whose memory touches the fences in front of it or behind it.
void tryFrame(const Format &format, std::size_t channels, std::size_t len, std::size_t step, bool isAtEnd) {
    static std::mt19937 random(1);
    constexpr float untouched = -1234.5F;
    const std::size_t floats = (channels - 1) * step + len;
    const FencedMemory source(channels * len * format.bytes);
    const FencedMemory destination(floats * sizeof(float));
    unsigned char *const src = source.room(channels * len * format.bytes, isAtEnd);
    auto *const dst = reinterpret_cast<float *>(destination.room(floats * sizeof(float), isAtEnd));
    auto *const begin = reinterpret_cast<float *>(destination.begin());
    auto *const end = reinterpret_cast<float *>(destination.end());
    std::fill(begin, end, untouched);
    std::vector<float> expected(begin, end);
    int expectedReplaced = 0;
    for (std::size_t n = 0; n < channels * len; ++n) {
        const bool isEdge = random() % 4 == 0;
        const std::uint32_t code =
            isEdge ? format.edges[random() % format.edges.size()]
                   : static_cast<std::uint32_t>(random() & (0xFFFFFFFFU >> (32 - 8 * format.bytes)));
        for (unsigned byte = 0; byte < format.bytes; ++byte) {
            src[n * format.bytes + byte] = static_cast<unsigned char>(code >> 8 * (format.bytes - 1 - byte));
        }
        expected[static_cast<std::size_t>(dst - begin) + n % channels * step + n / channels] =
            static_cast<float>(valueOf(format, code, expectedReplaced));
    }
    int replaced = -1;
    const auto amount = [](std::size_t number) { return static_cast<int>(number); };
    EXPECT_EQ(format.run(src, amount(channels), amount(len), dst, amount(step), &replaced), ippStsNoErr);
    EXPECT_EQ(replaced, expectedReplaced);
    for (std::size_t n = 0; n < expected.size(); ++n) {
        ASSERT_EQ(std::memcmp(begin + n, &expected[n], sizeof(float)), 0)
            << begin[n] << " instead of " << expected[n] << " at float " << begin + n - dst;
    }
}

TEST_P(SampleBlocks, takeFramesOfAnyShapeApart) {
    std::vector<std::pair<std::size_t, std::size_t>> shapes = {{60, 6},   {8, 48},   {64, 12},  {2, 333},   {1023, 3},
                                                               {1023, 5}, {3, 1023}, {129, 65}, {1, 65535}, {9, 65535}};
    for (std::size_t channels = 1; channels <= 20; ++channels) {
        for (std::size_t len = 1; len <= 20; ++len) {
            shapes.emplace_back(channels, len);
        }
    }
    for (const Format &format : formats) {
        for (const auto &[channels, len] : shapes) {
            SCOPED_TRACE(testing::Message() << format.name << ", " << channels << " x " << len);
            tryFrame(format, channels, len, len, true);
            tryFrame(format, channels, len, len + len % 7 + 1, false);
            if (HasFailure()) {
                return;
            }
        }
    }
}

TEST_P(SampleBlocks, refuseWhatCannotBeAndWriteNothing) {
    const Ipp8u src[64] = {0x7F, 0x80};
    const float before[4] = {1, 2, 3, 4};
    float dst[4] = {1, 2, 3, 4};
    int replaced = 99;
    for (const Format &format : formats) {
        const auto run = [&](int channels, int len, int step, const Ipp8u *from, float *to) {
            return format.run(from, channels, len, to, step, &replaced);
        };
        for (const int wrong : {0, -1, INT_MIN}) {
            EXPECT_EQ(run(wrong, 0, -1, nullptr, dst), ippStsNullPtrErr);
            EXPECT_EQ(run(wrong, 0, -1, src, nullptr), ippStsNullPtrErr);
            EXPECT_EQ(run(wrong, 2, 1, src, dst), ippStsSizeErr);
            EXPECT_EQ(run(2, wrong, INT_MIN, src, dst), ippStsSizeErr);
            EXPECT_EQ(run(2, 2, wrong, src, dst), ippStsStepErr);
        }
        for (const int side : {46341, 65536}) {
            EXPECT_EQ(run(side, side, side - 1, src, dst), ippStsSizeErr) << "more samples than an int can tell";
        }
        EXPECT_EQ(run(32768, 65535, 65534, src, dst), ippStsStepErr) << "as many samples as there may be";
        EXPECT_EQ(run(2, 2, 1, src, dst), ippStsStepErr);
    }
    EXPECT_EQ(sonvexDeinterleave_32f(src, 0, 0, dst, -1, nullptr), ippStsNullPtrErr);
    EXPECT_TRUE(std::memcmp(dst, before, sizeof dst) == 0 && replaced == 99);
}

} // namespace
