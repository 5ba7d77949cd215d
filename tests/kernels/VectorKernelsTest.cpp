#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
#include <vector>

#include "CpuLevels.h"
#include "KernelMemory.h"
#include "noise.h"

namespace {

using support::Guarded;
using support::noise;

class VectorKernels : public support::AtLevel {};
SONVEX_AT_ALL_LEVELS(VectorKernels);

/// Calls function(length, misalignment) for lengths around those of all vectors, at every place within 64 bytes.
template <class Function>
void forLengths(std::vector<std::size_t> lengths, std::size_t elementSize, Function function) {
    for (std::size_t length = 1; length <= 70; ++length) {
        lengths.push_back(length);
    }
    for (const std::size_t length : lengths) {
        for (std::size_t at = 0; at < 64 && !testing::Test::HasFailure(); at += elementSize) {
            SCOPED_TRACE(testing::Message() << "length " << length << ", misalignment " << at);
            function(length, at);
        }
    }
}

/// Tries an operation from one vector to another; expected(from, to, n) is what value n has to become.
template <class Element, class Run, class Expected>
void tryOperation(std::size_t elementsPerValue, double tolerance, Run run, Expected expected) {
    forLengths({1000, 4097}, sizeof(Element), [&](std::size_t length, std::size_t at) {
        Guarded<Element> from(elementsPerValue * length, 64 - sizeof(Element) - at);
        Guarded<Element> to(length, at);
        const std::vector<Element> source = noise<Element>(from.size());
        const std::vector<Element> before = noise<Element>(length, 1);
        from.fill(source);
        to.fill(before);
        EXPECT_EQ(run(from.get(), to.get(), static_cast<int>(length)), ippStsNoErr);
        for (std::size_t n = 0; n < length; ++n) {
            const double value = expected(source, before, n);
            ASSERT_NEAR(to[n], value, tolerance * std::abs(value)) << "value " << n;
        }
        EXPECT_TRUE(from.values() == source && from.isIntact() && to.isIntact());
    });
}

TEST_P(VectorKernels, reportNullBeforeSizeAndWriteNothing) {
    Guarded<float> a(8);
    Guarded<double> b(8);
    auto *const pairs = reinterpret_cast<Ipp32fc *>(b.get());
    for (const int len : {INT_MIN, -1, 0, 4}) {
        for (const int status :
             {ippsSet_32f(1, nullptr, len), ippsWinHann_32f_I(nullptr, len), ippsConjCcs_32fc_I(nullptr, len),
              ippsMul_32f_I(nullptr, a.get(), len), ippsMul_32f_I(a.get(), nullptr, len),
              ippsSqr_64f(nullptr, b.get(), len), ippsSqr_64f(b.get(), nullptr, len),
              ippsPowerSpectr_32fc(nullptr, a.get(), len), ippsPowerSpectr_32fc(pairs, nullptr, len)}) {
            EXPECT_EQ(status, ippStsNullPtrErr) << len;
        }
    }
    for (const int len : {INT_MIN, -1, 0}) {
        for (const int status :
             {ippsSet_32f(1, a.get(), len), ippsConjCcs_32fc_I(pairs, len), ippsMul_32f_I(a.get(), a.get(), len),
              ippsSqr_64f(b.get(), b.get(), len), ippsPowerSpectr_32fc(pairs, a.get(), len),
              ippsWinHann_32f_I(a.get(), len), ippsWinHann_32f_I(a.get(), 1), ippsWinHann_32f_I(a.get(), 2)}) {
            EXPECT_EQ(status, ippStsSizeErr) << len;
        }
    }
    EXPECT_TRUE(a.isUntouched() && b.isUntouched());
}

TEST_P(VectorKernels, setFillsWithTheVeryValue) {
    const std::vector<std::size_t> aroundUncached = {262143, 262144, 262145, 262159, 262160, 262161};
    for (const float value : {-0.0F, std::numeric_limits<float>::quiet_NaN(), 1e-42F}) {
        forLengths(value == 0 ? aroundUncached : std::vector<std::size_t>{}, 4, [&](std::size_t length, auto at) {
            Guarded<float> to(length, at);
            EXPECT_EQ(ippsSet_32f(value, to.get(), static_cast<int>(length)), ippStsNoErr);
            const std::vector<float> expected(length, value);
            EXPECT_TRUE(std::memcmp(to.get(), expected.data(), length * 4) == 0 && to.isIntact());
        });
    }
}

TEST_P(VectorKernels, mulRoundsTheProductOnce) {
    tryOperation<float>(1, 0, ippsMul_32f_I, [](const auto &from, const auto &to, std::size_t n) {
        return static_cast<float>(double{from[n]} * double{to[n]});
    });
}

TEST_P(VectorKernels, sqrSquaresInPlaceToo) {
    const auto square = [](const auto &from, const auto &, std::size_t n) { return from[n] * from[n]; };
    const auto runTwice = [](const double *from, double *to, int len) {
        std::copy(from, from + len, to);
        return ippsSqr_64f(to, to, len);
    };
    tryOperation<double>(1, 0, ippsSqr_64f, square);
    tryOperation<double>(1, 0, runTwice, square);
}

TEST_P(VectorKernels, powerSpectrAddsTheSquaresOfBothParts) {
    const auto run = [](const float *from, float *to, int len) {
        return ippsPowerSpectr_32fc(reinterpret_cast<const Ipp32fc *>(from), to, len);
    };
    tryOperation<float>(2, 1.3e-7, run, [](const auto &from, const auto &, std::size_t n) {
        return std::pow(from[2 * n], 2.0) + std::pow(from[2 * n + 1], 2.0);
    });
}

TEST_P(VectorKernels, conjCcsMirrorsAllButTheFirstAndTheMiddleBin) {
    forLengths({1024, 4096, 4097}, 4, [](std::size_t length, std::size_t at) {
        Guarded<float> bins(2 * length, at);
        std::vector<float> values = noise<float>(2 * length);
        bins.fill(values);
        for (std::size_t k = 1; 2 * k < length; ++k) {
            values[2 * (length - k)] = values[2 * k];
            values[2 * (length - k) + 1] = -values[2 * k + 1];
        }
        EXPECT_EQ(ippsConjCcs_32fc_I(reinterpret_cast<Ipp32fc *>(bins.get()), static_cast<int>(length)), ippStsNoErr);
        EXPECT_TRUE(bins.values() == values && bins.isIntact());
    });
}

TEST_P(VectorKernels, winHannMultipliesByTheSymmetricWindow) {
    std::vector<std::size_t> lengths = {4800, 32768, 65536, 1000001};
    for (std::size_t length = 3; length <= 150; ++length) {
        lengths.push_back(length);
    }
    for (const std::size_t length : lengths) {
        const std::size_t at = length % 16 * 4;
        Guarded<float> window(length, at);
        Guarded<float> signal(length, 60 - at);
        const std::vector<float> values = noise<float>(length);
        window.fill(std::vector<float>(length, 1));
        signal.fill(values);
        EXPECT_EQ(ippsWinHann_32f_I(window.get(), static_cast<int>(length)), ippStsNoErr);
        EXPECT_EQ(ippsWinHann_32f_I(signal.get(), static_cast<int>(length)), ippStsNoErr);
        const long double turn = 8 * std::atan(1.0L) / static_cast<long double>(length - 1);
        for (std::size_t n = 0; n < length - n; ++n) {
            const auto exact = static_cast<double>(0.5L - 0.5L * std::cos(turn * static_cast<long double>(n)));
            ASSERT_NEAR(window[n], exact, 6e-8 * exact + 1e-15) << "factor " << n << " of " << length;
            const std::size_t mirror = length - 1 - n;
            ASSERT_TRUE(window[mirror] == window[n] && signal[n] == window[n] * values[n] &&
                        signal[mirror] == window[n] * values[mirror])
                << "value " << n << " of " << length;
        }
        EXPECT_TRUE(window[0] == 0 && (length % 2 == 0 || window[length / 2] == 1)) << length;
        EXPECT_TRUE(length != 4 || (window[1] == 0.75F && window[2] == 0.75F));
        EXPECT_TRUE(window.isIntact() && signal.isIntact()) << length;
    }
}

} // namespace
