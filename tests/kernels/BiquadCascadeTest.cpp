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
using Signal = std::vector<double>;

class BiquadCascade : public support::AtLevel {};
SONVEX_AT_ALL_LEVELS(BiquadCascade);

/// In more digits and more range than a double has.
Signal filterByLaw(const Signal &taps, const Signal &signal, const Signal &delayLine = {}) {
    support::CascadeLaw<long double> law(taps, delayLine);
    Signal filtered;
    for (const double value : signal) {
        filtered.push_back(static_cast<double>(law.filter(value)));
    }
    return filtered;
}

std::size_t stateBytes(int sections) {
    int size = -1;
    EXPECT_EQ(ippsIIRGetStateSize_BiQuad_64f(sections, &size), ippStsNoErr);
    return static_cast<std::size_t>(size);
}

/// A state in exactly as much memory as was asked for, at an odd address.
class Cascade {
public:
    explicit Cascade(const Signal &taps, const Signal &delayLine = {})
        : memory(stateBytes(static_cast<int>(taps.size() / 6)), 1) {
        start(taps, delayLine);
    }

    void start(const Signal &taps, const Signal &delayLine = {}) {
        const double *const delays = delayLine.empty() ? nullptr : delayLine.data();
        const int sections = static_cast<int>(taps.size() / 6);
        EXPECT_EQ(ippsIIRInit_BiQuad_64f(&state, taps.data(), sections, delays, memory.get()), ippStsNoErr);
    }

    /// Filters in calls of these lengths, in turn, until the signal ends.
    Signal operator()(const Signal &signal, const std::vector<std::size_t> &lengths, bool inPlace = false) {
        Guarded<double> from(signal.size(), 8);
        Guarded<double> to(signal.size(), 16);
        from.fill(signal);
        Guarded<double> &result = inPlace ? from : to;
        std::size_t done = 0;
        for (std::size_t call = 0; done < signal.size(); ++call) {
            const std::size_t length = std::min(lengths[call % lengths.size()], signal.size() - done);
            EXPECT_EQ(ippsIIR_64f(from.get() + done, result.get() + done, static_cast<int>(length), state), 0);
            done += length;
        }
        EXPECT_TRUE(from.isIntact() && to.isIntact() && memory.isIntact());
        EXPECT_TRUE(inPlace || std::memcmp(from.get(), signal.data(), signal.size() * sizeof(double)) == 0);
        return result.values();
    }

    IppsIIRState_64f *get() const { return state; }

private:
    Guarded<Ipp8u> memory;
    IppsIIRState_64f *state = nullptr;
};

/// The error relative to the largest value so far; a NaN has to be one in both.
double worstError(const Signal &filtered, const Signal &expected) {
    double largest = 1e-300;
    double worst = 0;
    for (std::size_t n = 0; n < expected.size(); ++n) {
        if (std::isnan(expected[n]) != std::isnan(filtered[n])) {
            return 1;
        }
        largest = std::fmax(largest, std::abs(expected[n]));
        worst = std::fmax(worst, std::abs(filtered[n] - expected[n]) / largest);
    }
    return worst;
}

/// Sections with pole pairs of this radius or, two of three, a smaller one.
Signal sections(int amount, double radius) {
    Signal taps;
    for (int n = 0; n < amount; ++n) {
        const double own = n % 3 == 0 ? radius : radius * (0.3 + 0.1 * (n % 7));
        const double a0 = 1.5 - n % 4;
        const double b0 = (1 - own * 0.9) * a0;
        for (const double tap :
             {b0, -0.4 * b0, 0.3 * b0, a0, -2 * own * std::cos(0.2 + 0.37 * n) * a0, own * own * a0}) {
            taps.push_back(tap);
        }
    }
    return taps;
}

/// What weights sound by frequency: zeros at 0 Hz and poles down to 20.6 Hz, at 48 kHz.
Signal weighting() {
    const auto pole = [](double hertz) { return std::exp(-8 * std::atan(1.0) * hertz / 48000); };
    const double low = pole(20.6);
    const double middle = pole(107.7);
    const double upper = pole(737.9);
    const double high = pole(12194);
    return {1, -2, 1, 1, -2 * low,  low * low,  1, -2, 1, 1, -middle - upper, middle * upper,
            1, 2,  1, 1, -2 * high, high * high};
}

TEST_P(BiquadCascade, followsTheLawHoweverTheSignalIsSplit) {
    const Signal signal = support::noise<double>(9611);
    const std::vector<std::size_t> mixed = {3, 4800, 15, 16, 17, 1, 31, 32, 33, 500, 1023};
    const std::vector<std::size_t> splits[] = {{20000}, {1},    {2},    {3},    {11},   {12}, {13},
                                               {600},   {1023}, {1024}, {1025}, {4800}, mixed};
    std::vector<Signal> filters = {weighting(),
                                   sections(1, 0.99999),
                                   sections(4, 0.99999),
                                   sections(3, 0.05),
                                   {0.5, 2, -1, 1, 0, 0, 2, 0, 1, 4, 0, 0}};
    for (const int amount : {1, 2, 3, 4, 5, 6, 7, 8, 20, 64, 65, 100}) {
        filters.push_back(sections(amount, 0.9));
    }
    for (const Signal &taps : filters) {
        for (const Signal &delayLine : {Signal{}, support::noise<double>(taps.size() / 3)}) {
            const Signal expected = filterByLaw(taps, signal, delayLine);
            for (const std::vector<std::size_t> &lengths : splits) {
                SCOPED_TRACE(testing::Message() << "filter " << &taps - filters.data() << ", calls of " << lengths[0]);
                Cascade cascade(taps, delayLine);
                const Signal filtered = cascade(signal, lengths);
                ASSERT_LT(worstError(filtered, expected), 2e-12);
                cascade.start(taps, delayLine); // in used memory
                ASSERT_TRUE(cascade(signal, lengths, true) == filtered) << "in place";
            }
        }
    }
}

/// Poles at the very end of the spectrum: the law itself has few digits left there, and those have to be kept.
TEST_P(BiquadCascade, keepsTheDigitsOfTheLawWithPolesNearZeroHertz) {
    const double r = 0.99999;
    const Signal lowPass = {1, 0, 0, 1, -2 * r, r * r};
    const Signal highPass = {1, -2, 1, 1, -2 * r, r * r};
    const Signal mirrored = {1, 0, 0, 1, 2 * r, r * r};
    Signal mixed = lowPass;
    for (int more = 0; more < 2; ++more) {
        mixed.insert(mixed.end(), highPass.begin(), highPass.end());
    }
    Signal direct(24000, 1.0);
    Signal hum(24000);
    for (std::size_t n = 0; n < hum.size(); ++n) {
        hum[n] = std::sin(static_cast<double>(n) * 20 * 8 * std::atan(1.0) / 48000);
    }
    for (const Signal &taps : {lowPass, highPass, mirrored, mixed, weighting()}) {
        for (const Signal &signal : {direct, hum, support::noise<double>(24000)}) {
            const double error = worstError(Cascade(taps)(signal, {4800}), filterByLaw(taps, signal));
            EXPECT_LT(error, taps.size() == 6 ? 1e-8 : 1e-7) << taps.size() / 6 << " sections";
        }
    }
    const Signal low = weighting();
    EXPECT_LT(worstError(Cascade(low)(hum, {4800}), filterByLaw(low, hum)), 2e-12);
}

TEST_P(BiquadCascade, followsTheLawOfUnstableTapsAsFarAsItIsFinite) {
    for (const double radius : {1.001, 1.5, 3.0, 1e5, 1e150}) {
        const Signal taps = sections(2, radius);
        const Signal signal = support::noise<double>(4800);
        Signal expected = filterByLaw(taps, signal);
        expected.erase(std::find_if_not(expected.begin(), expected.end(), [](double y) { return std::abs(y) < 1e280; }),
                       expected.end());
        for (const std::size_t length : {4800U, 600U, 13U}) {
            SCOPED_TRACE(testing::Message() << "radius " << radius << ", calls of " << length);
            EXPECT_TRUE(Cascade(taps)(Signal(4800), {length}) == Signal(4800)) << "silence does not stay silence";
            EXPECT_LT(worstError(Cascade(taps)(signal, {length}), expected), 2e-11);
        }
    }
}

TEST_P(BiquadCascade, carriesWhatIsNotANumberWhereTheLawDoes) {
    for (std::size_t position : {0U, 1U, 2U, 3U, 4U, 5U, 100U, 799U, 999U}) {
        Signal taps = sections(4, 0.9);
        Signal signal = support::noise<double>(1000);
        (position < 6 ? taps[6 + position] : signal[position]) = std::numeric_limits<double>::quiet_NaN();
        for (const std::size_t length : {1000U, 7U}) {
            EXPECT_LT(worstError(Cascade(taps)(signal, {length}), filterByLaw(taps, signal)), 1e-13) << position;
        }
    }
}

TEST_P(BiquadCascade, endsInZerosNotInDenormalNumbers) {
    for (const std::size_t length : {600U, 64U, 5U}) {
        Cascade cascade(sections(3, 0.99));
        cascade(support::noise<double>(4800), {length});
        cascade(Signal(200000), {length});
        EXPECT_TRUE(cascade(Signal(600), {length}) == Signal(600)) << "calls of " << length;
    }
}

TEST_P(BiquadCascade, tellsTheSizeOfItsState) {
    EXPECT_EQ(stateBytes(2), 9712U);
    EXPECT_EQ(stateBytes(3), 10032U);
    EXPECT_EQ(stateBytes(1001), 1001U * 312 + 8 + 9088);
    EXPECT_EQ(stateBytes(6800000), 6800000U * 312 + 9088);
    int size = -1;
    for (const int amount : {0, -1, INT_MIN, 6900000, 13800000, INT_MAX}) {
        EXPECT_EQ(ippsIIRGetStateSize_BiQuad_64f(amount, nullptr), ippStsNullPtrErr);
        EXPECT_EQ(ippsIIRGetStateSize_BiQuad_64f(amount, &size), ippStsIIROrderErr) << amount;
    }
    EXPECT_EQ(size, -1);
}

TEST_P(BiquadCascade, refusesInTheOrderOfTheFaults) {
    Guarded<Ipp8u> memory(stateBytes(2));
    Guarded<double> values(4);
    auto *const none = reinterpret_cast<IppsIIRState_64f *>(memory.get());
    IppsIIRState_64f *state = none;
    const Signal good = sections(2, 0.5);
    for (const int amount : {0, -1, 2}) {
        for (const int status : {ippsIIRInit_BiQuad_64f(nullptr, good.data(), amount, nullptr, memory.get()),
                                 ippsIIRInit_BiQuad_64f(&state, nullptr, amount, nullptr, memory.get()),
                                 ippsIIRInit_BiQuad_64f(&state, good.data(), amount, nullptr, nullptr)}) {
            EXPECT_EQ(status, ippStsNullPtrErr) << amount;
        }
        for (const std::size_t tap : {0U, 3U, 6U, 9U}) {
            Signal taps = good;
            taps[tap] = tap == 3 ? -0.0 : 0.0;
            EXPECT_EQ(ippsIIRInit_BiQuad_64f(&state, taps.data(), amount, nullptr, memory.get()),
                      amount > 0 ? ippStsDivByZeroErr : ippStsIIROrderErr);
        }
    }
    Cascade cascade(good);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(cascade.get()) % 32, 0U);
    for (const int len : {0, -1, INT_MIN, 4}) {
        for (IppsIIRState_64f *const filter : {none, cascade.get()}) {
            EXPECT_EQ(ippsIIR_64f(nullptr, values.get(), len, filter), ippStsNullPtrErr);
            EXPECT_EQ(ippsIIR_64f(values.get(), nullptr, len, filter), ippStsNullPtrErr);
            EXPECT_TRUE(len > 0 || ippsIIR_64f(values.get(), values.get(), len, filter) == ippStsSizeErr);
        }
        EXPECT_EQ(ippsIIR_64f(values.get(), values.get(), len, nullptr), ippStsNullPtrErr);
    }
    EXPECT_EQ(ippsIIR_64f(values.get(), values.get(), 4, none), ippStsContextMatchErr);
    EXPECT_TRUE(state == none && memory.isUntouched() && values.isUntouched());
}

} // namespace
