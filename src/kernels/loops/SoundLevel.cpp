// Filter, squares and two exponential averages with their peaks in one go.
//
// A block is cut into stretches of time, and row n of the scratch memory holds value n of every stretch, so that what
// waits for itself from value to value runs side by side in the lanes. Three passes go over a block, which the nearest
// cache holds: the filter from silence; what the true starts of the stretches add, the squares, and the averages of
// each stretch from zero, for their ends; the averages from their true starts, for the peaks.
#include "kernels/loops/BiquadState.h"
#include "kernels/loops/CpuLevelKernels.h"

namespace kernels::KERNEL_LEVEL {
namespace {

constexpr int vectors = 4; // so many hide the latency of an average's step
constexpr int lanes = vectors * doubleLanes;
constexpr long longestStretch = 150;

/// The average divided by its input factor, which saves a multiplication a value.
struct Average {
    /// @param gain of the filter, which its output is divided by
    Average(const SonvexAverage &from, double gain)
        : keep(from.keep), input(from.input * gain * gain), value(from.average / input), peak(from.peak / input) {}

    void add(double square) {
        value = keep * value + square;
        raisePeak(value);
    }

    void raisePeak(double candidate) { peak = candidate > peak ? candidate : peak; }

    void storeTo(SonvexAverage &to) const {
        const double average = value * input;
        const double highest = peak * input;
        to.average = average < silence ? 0 : average;
        to.peak = highest > to.peak ? highest : to.peak;
    }

    double keep;
    double input;
    double value;
    double peak;
};

/// Reads the stretches of the signal, writes the scratch memory.
struct SignalRows {
    void load(int vector, long n, Doubles (&x)[doubleLanes]) const {
        for (int lane = 0; lane < doubleLanes; ++lane) {
            x[lane] = loadWidened(src + (vector * doubleLanes + lane) * length + n);
        }
        transpose(x);
    }

    void store(int vector, long n, const Doubles (&x)[doubleLanes]) const {
        for (int step = 0; step < doubleLanes; ++step) {
            storeOne(vector, n + step, x[step]);
        }
    }

    Doubles loadOne(int vector, long n) const {
        Doubles x{};
        for (int lane = 0; lane < doubleLanes; ++lane) {
            x[lane] = static_cast<double>(src[(vector * doubleLanes + lane) * length + n]);
        }
        return x;
    }

    void storeOne(int vector, long n, Doubles x) const {
        KERNEL_LEVEL::store(scratch + n * lanes + vector * doubleLanes, x);
    }

    const float *src;
    double *scratch;
    long length; ///< of a stretch
};

double power(double base, long exponent) {
    double result = 1;
    for (; exponent > 0; exponent /= 2) {
        result *= exponent % 2 == 1 ? base : 1;
        base *= base;
    }
    return result;
}

/// Adds what D start values of K vectors of stretches cause, squares in place, and averages each stretch from zero.
template <int D, int K>
SONVEX_INLINE void squareAndSum(double *rows, long begin, long end, const SectionGroup &group, const Doubles *start,
                                int stride, Doubles keepFast, Doubles keepSlow, Doubles *fast, Doubles *slow) {
    for (long n = begin; n < end; ++n) {
        double *const row = rows + n * lanes;
        for (int vector = 0; vector < K; ++vector) {
            Doubles y = load(row + vector * doubleLanes);
            Doubles z{}; // two sums, so that an addition waits for half of the others only
            for (int delay = 0; delay < D; delay += 2) {
                y += broadcast(group.responses[delay * group.responseStride + n]) * start[stride * vector + delay];
                z += broadcast(group.responses[(delay + 1) * group.responseStride + n]) *
                     start[stride * vector + delay + 1];
            }
            y += z;
            const Doubles square = y * y;
            store(row + vector * doubleLanes, square);
            fast[vector] = fast[vector] * keepFast + square;
            slow[vector] = slow[vector] * keepSlow + square;
        }
    }
}

/// Fills the scratch memory with the squares of a filtered block.
template <int G>
void filterAndSquare(const SectionGroup &group, const SignalRows &rows, double *delayLine, double keepFast,
                     double keepSlow, double (&fastEnds)[lanes], double (&slowEnds)[lanes]) {
    double ends[2 * G][lanes];
    runStretches<G, vectors>(group, rows.length, delayLine, ends, rows);
    double starts[lanes + 1][2 * G];
    propagate<G, lanes>(group, ends, starts, delayLine);
    constexpr int K = 2; // so many hide the latency of an average
    for (int vector = 0; vector < vectors; vector += K) {
        Doubles start[K * 2 * G];
        for (int one = 0; one < K * 2 * G; ++one) {
            double ofLanes[doubleLanes];
            for (int lane = 0; lane < doubleLanes; ++lane) {
                ofLanes[lane] = starts[(vector + one / (2 * G)) * doubleLanes + lane][one % (2 * G)];
            }
            start[one] = load(ofLanes);
        }
        Doubles fast[K] = {};
        Doubles slow[K] = {};
        double *const scratch = rows.scratch + vector * doubleLanes;
        const long decayed = group.lastDecay < rows.length ? group.lastDecay : rows.length;
        squareAndSum<2 * G, K>(scratch, 0, decayed, group, start, 2 * G, broadcast(keepFast), broadcast(keepSlow), fast,
                               slow);
        squareAndSum<2 * G - 2, K>(scratch, decayed, rows.length, group, start, 2 * G, broadcast(keepFast),
                                   broadcast(keepSlow), fast, slow);
        for (int one = 0; one < K; ++one) {
            store(fastEnds + (vector + one) * doubleLanes, fast[one]);
            store(slowEnds + (vector + one) * doubleLanes, slow[one]);
        }
    }
}

/// Fills the scratch memory with the squares of a block as it is.
void square(const SignalRows &rows, double keepFast, double keepSlow, double (&fastEnds)[lanes],
            double (&slowEnds)[lanes]) {
    Doubles fast[vectors] = {};
    Doubles slow[vectors] = {};
    const auto add = [&](int vector, Doubles value) {
        fast[vector] = fast[vector] * keepFast + value;
        slow[vector] = slow[vector] * keepSlow + value;
    };
    long n = 0;
    for (; n + doubleLanes <= rows.length; n += doubleLanes) {
        for (int vector = 0; vector < vectors; ++vector) {
            Doubles x[doubleLanes];
            rows.load(vector, n, x);
            for (int step = 0; step < doubleLanes; ++step) {
                x[step] = x[step] * x[step];
                add(vector, x[step]);
            }
            rows.store(vector, n, x);
        }
    }
    for (; n < rows.length; ++n) {
        for (int vector = 0; vector < vectors; ++vector) {
            const Doubles x = rows.loadOne(vector, n);
            rows.storeOne(vector, n, x * x);
            add(vector, x * x);
        }
    }
    for (int vector = 0; vector < vectors; ++vector) {
        store(fastEnds + vector * doubleLanes, fast[vector]);
        store(slowEnds + vector * doubleLanes, slow[vector]);
    }
}

/// Makes the ends that were reached from zero the true starts of the stretches behind them.
void chain(Average &average, double step, const double (&ends)[lanes], double (&starts)[lanes]) {
    for (int lane = 0; lane < lanes; ++lane) {
        starts[lane] = average.value;
        average.value = step * average.value + ends[lane];
    }
}

/// The peaks of both averages over a block of squares, from the starts of its stretches.
void findPeaks(const double *scratch, long length, Average &fast, Average &slow, const double (&fastStarts)[lanes],
               const double (&slowStarts)[lanes]) {
    const Doubles keepFast = broadcast(fast.keep);
    const Doubles keepSlow = broadcast(slow.keep);
    Doubles fastPeak = broadcast(fast.peak);
    Doubles slowPeak = broadcast(slow.peak);
    Doubles fasts[vectors];
    Doubles slows[vectors];
    for (int vector = 0; vector < vectors; ++vector) {
        fasts[vector] = load(fastStarts + vector * doubleLanes);
        slows[vector] = load(slowStarts + vector * doubleLanes);
    }
    for (long n = 0; n < length; ++n) {
        for (int vector = 0; vector < vectors; ++vector) {
            const Doubles square = load(scratch + n * lanes + vector * doubleLanes);
            fasts[vector] = fasts[vector] * keepFast + square;
            slows[vector] = slows[vector] * keepSlow + square;
            fastPeak = fasts[vector] > fastPeak ? fasts[vector] : fastPeak;
            slowPeak = slows[vector] > slowPeak ? slows[vector] : slowPeak;
        }
    }
    for (int lane = 0; lane < doubleLanes; ++lane) {
        fast.raisePeak(fastPeak[lane]);
        slow.raisePeak(slowPeak[lane]);
    }
}

/// Whether a filter can run in stretches. Its output is divided by its gain then, which saves a multiplication a value.
bool runsInStretches(const IppsIIRState_64f &state) {
    return state.sectionCount <= groupSections && state.longestStretch >= shortestStretch;
}

/// Runs as much as makes whole blocks. @return how many samples that were
long runBlocks(const float *src, long len, IppsIIRState_64f *state, Average &fast, Average &slow) {
    if (len < lanes * shortestStretch || (state != nullptr && !runsInStretches(*state))) {
        return 0;
    }
    const long longest =
        state != nullptr && state->longestStretch < longestStretch ? state->longestStretch : longestStretch;
    // Blocks of equal length, so that one set of transitions serves all of them.
    const long blocks = (len + lanes * longest - 1) / (lanes * longest);
    const long length = len / blocks / lanes;
    if (state != nullptr) {
        prepareTransitions(*state, length);
    }
    const double fastStep = power(fast.keep, length);
    const double slowStep = power(slow.keep, length);
    double scratch[lanes * longestStretch];
    for (long block = 0; block < blocks; ++block) {
        const SignalRows rows{src + block * lanes * length, scratch, length};
        double fastEnds[lanes];
        double slowEnds[lanes];
        if (state == nullptr) {
            square(rows, fast.keep, slow.keep, fastEnds, slowEnds);
        } else {
            SectionGroup group = groupOf(*state, 0);
            for (int section = 0; section < group.sections; ++section) {
                group.scale[section] /= group.gain;
            }
            double *const delays = state->delayLine;
            bySections(
                group.sections,
                [&] { filterAndSquare<1>(group, rows, delays, fast.keep, slow.keep, fastEnds, slowEnds); },
                [&] { filterAndSquare<2>(group, rows, delays, fast.keep, slow.keep, fastEnds, slowEnds); },
                [&] { filterAndSquare<3>(group, rows, delays, fast.keep, slow.keep, fastEnds, slowEnds); });
        }
        double fastStarts[lanes];
        double slowStarts[lanes];
        chain(fast, fastStep, fastEnds, fastStarts);
        chain(slow, slowStep, slowEnds, slowStarts);
        findPeaks(scratch, length, fast, slow, fastStarts, slowStarts);
    }
    return blocks * lanes * length;
}

bool isUsable(const SonvexAverage &average) {
    return average.keep >= 0 && average.keep <= 1 && average.input > 0;
}

} // namespace

IppStatus sonvexSoundLevel_32f(const Ipp32f *pSrc, int len, IppsIIRState_64f *pState, SonvexAverage *pFast,
                               SonvexAverage *pSlow) {
    if (pSrc == nullptr || pFast == nullptr || pSlow == nullptr) {
        return ippStsNullPtrErr;
    }
    if (len <= 0) {
        return ippStsSizeErr;
    }
    if (pState != nullptr && !isState(*pState)) {
        return ippStsContextMatchErr;
    }
    if (!isUsable(*pFast) || !isUsable(*pSlow)) {
        return ippStsBadArgErr;
    }
    const double gain = pState != nullptr && runsInStretches(*pState) ? groupOf(*pState, 0).gain : 1;
    const double reciprocal = 1 / gain;
    Average fast(*pFast, gain);
    Average slow(*pSlow, gain);
    for (long n = runBlocks(pSrc, len, pState, fast, slow); n < len; ++n) {
        const double x = static_cast<double>(pSrc[n]);
        const double y = pState == nullptr ? x : filterValue(*pState, x) * reciprocal;
        fast.add(y * y);
        slow.add(y * y);
    }
    if (pState != nullptr) {
        flushSilence(*pState);
    }
    fast.storeTo(*pFast);
    slow.storeTo(*pSlow);
    return ippStsNoErr;
}

} // namespace kernels::KERNEL_LEVEL
