#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
#include <vector>

#include "CpuLevels.h"
#include "KernelMemory.h"
#include "SoundLevelLaw.h"
#include "noise.h"

namespace {

using support::Guarded;
using support::noise;

class SoundLevelKernels : public support::AtLevel {};
SONVEX_AT_ALL_LEVELS(SoundLevelKernels);

/// High-passes at 20.6 Hz and 200 Hz, a low-pass at 12.2 kHz, and one that rings at 7 kHz; at 48 kHz.
constexpr double sections[4][6] = {{0.9, -1.8, 0.9, 1, -1.994614455993, 0.994621707014},
                                   {1, -2, 1, 1, -1.948, 0.94867},
                                   {2, 4, 2, 2, -0.449116916118, 0.025213250544},
                                   {0.5, 0.1, -0.5, 1, -1.2, 0.98}};

struct Averages {
    SonvexAverage fast{0.999833347221, 0.000166652779, 0, 0};
    SonvexAverage slow{0.999979166884, 2.0833116e-05, 0, 0};
};

/// The filters and both averages in more digits than a double has.
struct Law {
    explicit Law(int sectionCount)
        : cascade({sections[0], sections[0] + static_cast<std::ptrdiff_t>(6) * sectionCount}) {}

    void run(const float *samples, std::size_t length, bool counts = true) {
        for (std::size_t n = 0; n < length; ++n) {
            const long double x = cascade.filter(static_cast<long double>(samples[n]));
            if (counts) {
                fast.add(x);
                slow.add(x);
            }
        }
    }

    support::CascadeLaw<long double> cascade;
    support::AverageLaw<long double> fast{Averages().fast.keep, Averages().fast.input};
    support::AverageLaw<long double> slow{Averages().slow.keep, Averages().slow.input};
};

struct Filter {
    explicit Filter(int sectionCount) {
        int size = 0;
        ippsIIRGetStateSize_BiQuad_64f(std::max(sectionCount, 1), &size);
        memory.resize(static_cast<std::size_t>(size));
        if (sectionCount > 0) {
            EXPECT_EQ(ippsIIRInit_BiQuad_64f(&state, sections[0], sectionCount, nullptr, memory.data()), 0);
        }
    }

    std::vector<Ipp8u> memory;
    IppsIIRState_64f *state = nullptr;
};

void expectNear(const Averages &results, const Law &law) {
    for (const auto &[result, expected] : {std::pair{results.fast, law.fast}, {results.slow, law.slow}}) {
        EXPECT_NEAR(result.average, static_cast<double>(expected.average), 1e-11 * result.average);
        EXPECT_NEAR(result.peak, static_cast<double>(expected.peak), 1e-11 * result.peak);
    }
}

TEST_P(SoundLevelKernels, followTheLawFromCallToCall) {
    const std::vector<float> samples = noise<float>(20011);
    for (int sectionCount = 0; sectionCount <= 4; ++sectionCount) {
        Filter filter(sectionCount);
        Law law(sectionCount);
        Averages results;
        std::size_t done = 0;
        for (const std::size_t length : {1, 127, 128, 131, 600, 3, 4800, 600, 4799, 2401, 257, 5000}) {
            // A loud beginning gives a peak in the first stretch, a fading signal one that an earlier call has set.
            Guarded<float> block(length, 4 * (length % 16));
            std::vector<float> values(samples.begin() + static_cast<std::ptrdiff_t>(done),
                                      samples.begin() + static_cast<std::ptrdiff_t>(done + length));
            for (float &value : values) {
                value *= length % 2 == 0 ? 1.0F : 0.01F;
            }
            block.fill(values);
            EXPECT_EQ(
                sonvexSoundLevel_32f(block.get(), static_cast<int>(length), filter.state, &results.fast, &results.slow),
                0);
            law.run(values.data(), length);
            SCOPED_TRACE(testing::Message() << sectionCount << " sections, sample " << done << " + " << length);
            expectNear(results, law);
            EXPECT_TRUE(block.isIntact() && block.values() == values);
            if (length == 600) {
                results.fast.peak = results.slow.peak = 0;
                law.fast.peak = law.slow.peak = 0;
            }
            done += length;
        }
    }
}

TEST_P(SoundLevelKernels, shareTheStateWithTheFilterAlone) {
    const std::vector<float> samples = noise<float>(3000);
    const std::vector<double> wide(samples.begin(), samples.end());
    std::vector<double> filtered(1000);
    Filter shared(3);
    Law law(3);
    Averages results;
    EXPECT_EQ(sonvexSoundLevel_32f(samples.data(), 1000, shared.state, &results.fast, &results.slow), 0);
    EXPECT_EQ(ippsIIR_64f(wide.data() + 1000, filtered.data(), 1000, shared.state), 0);
    EXPECT_EQ(sonvexSoundLevel_32f(samples.data() + 2000, 1000, shared.state, &results.fast, &results.slow), 0);
    law.run(samples.data(), 1000);
    law.run(samples.data() + 1000, 1000, false);
    law.run(samples.data() + 2000, 1000);
    expectNear(results, law);
}

TEST_P(SoundLevelKernels, bearTapsOfAnySize) {
    // Products of such b0 leave the range of a double, the signal does not.
    const double taps[18] = {1e-170, 1e-171, 0, 1, -0.5, 0.1, 1e-160, 0, 0, 1, 0, 0, 1e300, 0, 0, 1, -0.9, 0};
    std::vector<Ipp8u> memory(20000);
    IppsIIRState_64f *state = nullptr;
    ASSERT_EQ(ippsIIRInit_BiQuad_64f(&state, taps, 3, nullptr, memory.data()), 0);
    std::vector<double> values(500, 1e100);
    ASSERT_EQ(ippsIIR_64f(values.data(), values.data(), 500, state), 0);
    EXPECT_NEAR(values.back(), 1e100 * 1.1e-170 / 0.6 * 1e-160 * 1e300 / 0.1, 1e60);
}

TEST_P(SoundLevelKernels, endInZeroAndPassInvalidValuesOn) {
    Filter filter(3);
    SonvexAverage fast{0.5, 0.5, 1e-285, 0};
    SonvexAverage slow{0.999, 0.001, 1e-200, 0};
    std::vector<float> samples(1000, 0.0F);
    EXPECT_EQ(sonvexSoundLevel_32f(samples.data(), 1000, filter.state, &fast, &slow), 0);
    EXPECT_EQ(fast.average, 0.0);
    EXPECT_NEAR(slow.average / (1e-200 * std::pow(0.999, 1000)), 1, 1e-10);
    EXPECT_NEAR(fast.peak / 5e-286, 1, 1e-10);
    fast = slow = Averages().fast;
    samples[0] = 1;
    samples[500] = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(sonvexSoundLevel_32f(samples.data(), 1000, nullptr, &fast, &slow), 0);
    EXPECT_TRUE(std::isnan(fast.average));
    EXPECT_NEAR(fast.peak, fast.input, 1e-12);
}

TEST_P(SoundLevelKernels, refuseInTheOrderOfTheFaultsAndChangeNothing) {
    Filter filter(2);
    Ipp32u noState[64] = {};
    auto *const wrong = reinterpret_cast<IppsIIRState_64f *>(noState);
    const float sample = 1;
    SonvexAverage good = Averages().fast;
    for (SonvexAverage bad : {SonvexAverage{1.1, 1, 0, 0}, {-0.1, 1, 0, 0}, {0.5, 0, 0, 0}, {0.5, -1, 0, 0}}) {
        EXPECT_EQ(sonvexSoundLevel_32f(&sample, 1, filter.state, &good, &bad), ippStsBadArgErr);
        EXPECT_EQ(sonvexSoundLevel_32f(&sample, 1, filter.state, &bad, &good), ippStsBadArgErr);
        EXPECT_EQ(sonvexSoundLevel_32f(&sample, 1, wrong, &bad, &good), ippStsContextMatchErr);
        for (const int len : {0, -1, INT_MIN}) {
            EXPECT_EQ(sonvexSoundLevel_32f(&sample, len, wrong, &bad, &good), ippStsSizeErr);
            EXPECT_EQ(sonvexSoundLevel_32f(nullptr, len, wrong, &good, &good), ippStsNullPtrErr);
            EXPECT_EQ(sonvexSoundLevel_32f(&sample, len, wrong, nullptr, &good), ippStsNullPtrErr);
            EXPECT_EQ(sonvexSoundLevel_32f(&sample, len, wrong, &good, nullptr), ippStsNullPtrErr);
        }
        EXPECT_EQ(bad.average + bad.peak + good.average + good.peak, 0.0);
    }
}

TEST_P(SoundLevelKernels, scalePowersInSinglePrecision) {
    for (std::size_t length = 1; length < 70; ++length) {
        Guarded<float> bins(2 * length, 4);
        Guarded<double> powers(length, 8);
        bins.fill(noise<float>(2 * length));
        auto *const source = reinterpret_cast<Ipp32fc *>(bins.get());
        ASSERT_EQ(sonvexScaledPower_32fc64f(source, 5.334F, powers.get(), static_cast<int>(length)), 0);
        for (std::size_t n = 0; n < length; ++n) {
            const auto re = static_cast<double>(bins[2 * n]);
            const auto im = static_cast<double>(bins[2 * n + 1]);
            const double power = static_cast<double>(5.334F) * (re * re + im * im);
            ASSERT_NEAR(powers[n], power, 2e-7 * power);
            ASSERT_EQ(powers[n], static_cast<double>(static_cast<float>(powers[n])));
        }
        ASSERT_TRUE(bins.isIntact() && powers.isIntact());
    }
    Ipp32fc bin{};
    double power = 0;
    EXPECT_EQ(sonvexScaledPower_32fc64f(nullptr, 1, &power, 0), ippStsNullPtrErr);
    EXPECT_EQ(sonvexScaledPower_32fc64f(&bin, 1, nullptr, 0), ippStsNullPtrErr);
    EXPECT_EQ(sonvexScaledPower_32fc64f(&bin, 1, &power, 0), ippStsSizeErr);
}

TEST_P(SoundLevelKernels, moveAnAverageByTheQuotientToTheLastDigit) {
    for (const double amount : {2.0, 3.0, 10.0, 16.0, 100.0, 1048576.0, 4294967295.0}) {
        for (std::size_t length = 1; length < 20; ++length) {
            const std::vector<double> values = noise<double>(3 * length);
            Guarded<double> newest(length, 8);
            Guarded<double> oldest(length, 16);
            Guarded<double> average(length, 24);
            newest.fill({values.begin(), values.begin() + static_cast<std::ptrdiff_t>(length)});
            oldest.fill({values.begin() + static_cast<std::ptrdiff_t>(length),
                         values.begin() + static_cast<std::ptrdiff_t>(2 * length)});
            average.fill({values.begin() + static_cast<std::ptrdiff_t>(2 * length), values.end()});
            const int len = static_cast<int>(length);
            ASSERT_EQ(sonvexMoveAverage_64f(newest.get(), oldest.get(), average.get(), amount, len), 0);
            for (std::size_t n = 0; n < length; ++n) {
                const double moved = values[2 * length + n] + (values[n] - values[length + n]) / amount;
                ASSERT_EQ(average[n], moved) << amount << ", value " << n << " of " << length;
                ASSERT_EQ(oldest[n], moved);
                ASSERT_EQ(newest[n], values[n]);
            }
            ASSERT_TRUE(newest.isIntact() && oldest.isIntact() && average.isIntact());
        }
    }
    double value = 0;
    EXPECT_EQ(sonvexMoveAverage_64f(nullptr, &value, &value, 0, 0), ippStsNullPtrErr);
    EXPECT_EQ(sonvexMoveAverage_64f(&value, nullptr, &value, 0, 0), ippStsNullPtrErr);
    EXPECT_EQ(sonvexMoveAverage_64f(&value, &value, nullptr, 0, 0), ippStsNullPtrErr);
    EXPECT_EQ(sonvexMoveAverage_64f(&value, &value, &value, 0, 0), ippStsSizeErr);
    EXPECT_EQ(sonvexMoveAverage_64f(&value, &value, &value, 0, 1), ippStsDivByZeroErr);
}

} // namespace
