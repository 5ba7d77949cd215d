#pragma once

#include "kernels/loops/Vector.h"

/**
 * @file
 * A group of filter sections over a block of signal, faster than its recurrence allows value by value.
 *
 * The block is cut into stretches of equal length that run side by side in the lanes, all but the first from silence.
 * The filter is linear: the true start of a stretch is the true end of the one before it, which is the end that was
 * computed from silence plus the transition matrix times the true start; and what a start adds to the output is the
 * sum of the responses to each delay value alone. Both are known from the taps.
 *
 * The sections run with a b0 of 1, which saves a multiplication in each: all b0 of the group multiply its input. So the
 * delay values of a section are those of the law times the b0 of the sections behind it.
 *
 * What is passed on from stretch to stretch is not d0 and d1 of a section but d0 + d1 and d1 (d0 - d1 for poles in the
 * upper half of the spectrum). With poles near 0 Hz both are large, their sum is small and grows over thousands of
 * values into the output: as a difference of two long responses it would have lost its digits.
 */

namespace kernels::KERNEL_LEVEL {
namespace {

constexpr int vectorsAtATime = 2; // so many that one's latency hides behind the other
constexpr int stretches = vectorsAtATime * doubleLanes;
constexpr int groupSections = 3; // the delay values of so many sections and stretches stay in registers
constexpr int groupDelays = 2 * groupSections;
constexpr int tapsPerSection = 5;

/// Taps of a section divided by its b0, each in all lanes. In memory they stand behind the place of b0.
struct SectionTaps {
    Doubles b1;
    Doubles b2;
    Doubles minusA1;
    Doubles minusA2;
};

/// What the steps need to know of a group. The tables lie in the filter's state; gain and scale follow from its taps.
struct SectionGroup {
    int sections;
    const double *vectorTaps;    ///< tapsPerSection vectors a section
    const double *responses;     ///< 2 sections rows: the output that a delay value of 1 causes, all others being 0
    long responseStride;         ///< from row to row
    const double *transitions;   ///< 2 sections columns: the delay values that such a one has become after a stretch
    double gain;                 ///< the product of all b0
    double scale[groupSections]; ///< of the delay values of each section, against those of the law
    long lastDecay;              ///< behind so many values the responses to the last section's delays are nothing
};

SONVEX_INLINE SectionTaps tapsOf(const double *vectorTaps, int section) {
    const double *const from = vectorTaps + tapsPerSection * doubleLanes * section;
    return {load(from + doubleLanes), load(from + 2 * doubleLanes), load(from + 3 * doubleLanes),
            load(from + 4 * doubleLanes)};
}

/// One value through one section.
SONVEX_INLINE Doubles runSection(const SectionTaps &taps, Doubles x, Doubles &d0, Doubles &d1) {
    const Doubles y = x + d0;
    d0 = taps.b1 * x + d1 + taps.minusA1 * y;
    d1 = taps.b2 * x + taps.minusA2 * y;
    return y;
}

/// The weight of d1 in what is passed on for d0.
SONVEX_INLINE double weightOfSecond(const double *vectorTaps, int section) {
    return tapsOf(vectorTaps, section).minusA1[0] > 0 ? 1 : -1;
}

template <int G>
SONVEX_INLINE Doubles runGroup(const double *vectorTaps, Doubles x, Doubles (&delays)[2 * G]) {
    for (int section = 0; section < G; ++section) {
        x = runSection(tapsOf(vectorTaps, section), x, delays[2 * section], delays[2 * section + 1]);
    }
    return x;
}

/// Lets each start value alone, set to 1, ring for some steps: visit(step, start value, output) for each.
template <int G, class Visit>
void ring(const double *vectorTaps, long steps, double *end, Visit visit) {
    constexpr int vectors = (2 * G + doubleLanes - 1) / doubleLanes;
    for (int vector = 0; vector < vectors; ++vector) {
        double starts[2 * G][doubleLanes] = {};
        for (int lane = 0; lane < doubleLanes; ++lane) {
            const int one = vector * doubleLanes + lane;
            if (one < 2 * G) {
                starts[one][lane] = 1;
                if (one % 2 == 1) { // the sum with d0 has to be 0
                    starts[one - 1][lane] = -weightOfSecond(vectorTaps, one / 2);
                }
            }
        }
        Doubles delays[2 * G];
        for (int delay = 0; delay < 2 * G; ++delay) {
            delays[delay] = load(starts[delay]);
        }
        for (long step = 0; step < steps; ++step) {
            const Doubles y = runGroup<G>(vectorTaps, Doubles{}, delays);
            for (int lane = 0; lane < doubleLanes && vector * doubleLanes + lane < 2 * G; ++lane) {
                visit(step, vector * doubleLanes + lane, y[lane]);
            }
        }
        for (int lane = 0; lane < doubleLanes && vector * doubleLanes + lane < 2 * G; ++lane) {
            double *const column = end + 2 * G * (vector * doubleLanes + lane);
            for (int section = 0; section < G; ++section) {
                const double second = delays[2 * section + 1][lane];
                column[2 * section] = delays[2 * section][lane] + weightOfSecond(vectorTaps, section) * second;
                column[2 * section + 1] = second;
            }
        }
    }
}

/// Reads and writes the lanes of a block: lane l of vector v is stretch v * doubleLanes + l of a signal.
struct BlockRows {
    void load(int vector, long n, Doubles (&x)[doubleLanes]) const {
        for (int lane = 0; lane < doubleLanes; ++lane) {
            x[lane] = gain * KERNEL_LEVEL::load(src + (vector * doubleLanes + lane) * length + n);
        }
        transpose(x);
    }

    void store(int vector, long n, Doubles (&x)[doubleLanes]) const {
        transpose(x);
        for (int lane = 0; lane < doubleLanes; ++lane) {
            KERNEL_LEVEL::store(dst + (vector * doubleLanes + lane) * length + n, x[lane]);
        }
    }

    Doubles loadOne(int vector, long n) const {
        Doubles x{};
        for (int lane = 0; lane < doubleLanes; ++lane) {
            x[lane] = src[(vector * doubleLanes + lane) * length + n];
        }
        return gain * x;
    }

    void storeOne(int vector, long n, Doubles x) const {
        for (int lane = 0; lane < doubleLanes; ++lane) {
            dst[(vector * doubleLanes + lane) * length + n] = x[lane];
        }
    }

    const double *src;
    double *dst;
    long length;  ///< of a stretch
    Doubles gain; ///< of the group
};

/// Runs doubleLanes steps of two vectors. Each section takes all steps before the next one does, so that its taps and
/// delay values stay in registers, and one vector hides the latency of the other.
template <int G, class Rows>
SONVEX_INLINE void runPair(const double *vectorTaps, const Rows &rows, int vector, long n, Doubles (&delays)[2 * G],
                           Doubles (&nextDelays)[2 * G]) {
    Doubles x[doubleLanes];
    Doubles z[doubleLanes];
    rows.load(vector, n, x);
    rows.load(vector + 1, n, z);
    for (int section = 0; section < G; ++section) {
        const SectionTaps taps = tapsOf(vectorTaps, section);
        Doubles d0 = delays[2 * section];
        Doubles d1 = delays[2 * section + 1];
        Doubles e0 = nextDelays[2 * section];
        Doubles e1 = nextDelays[2 * section + 1];
        for (int step = 0; step < doubleLanes; ++step) {
            x[step] = runSection(taps, x[step], d0, d1);
            z[step] = runSection(taps, z[step], e0, e1);
        }
        delays[2 * section] = d0;
        delays[2 * section + 1] = d1;
        nextDelays[2 * section] = e0;
        nextDelays[2 * section + 1] = e1;
    }
    rows.store(vector, n, x);
    rows.store(vector + 1, n, z);
}

/// Runs V vectors of stretches, an even number, the first stretch from the given delay values. Leaves the delay values
/// at their ends.
template <int G, int V, class Rows>
SONVEX_INLINE void runStretches(const SectionGroup &group, long length, const double *delayLine,
                                double (&ends)[2 * G][V * doubleLanes], const Rows &rows) {
    constexpr int N = doubleLanes;
    Doubles delays[V][2 * G] = {};
    for (int delay = 0; delay < 2 * G; ++delay) {
        delays[0][delay][0] = delayLine[delay] * group.scale[delay / 2];
    }
    long n = 0;
    for (; n + N <= length; n += N) {
        for (int vector = 0; vector < V; vector += 2) {
            runPair<G>(group.vectorTaps, rows, vector, n, delays[vector], delays[vector + 1]);
        }
    }
    for (; n < length; ++n) {
        for (int vector = 0; vector < V; ++vector) {
            rows.storeOne(vector, n, runGroup<G>(group.vectorTaps, rows.loadOne(vector, n), delays[vector]));
        }
    }
    for (int delay = 0; delay < 2 * G; ++delay) {
        for (int vector = 0; vector < V; ++vector) {
            store(ends[delay] + vector * N, delays[vector][delay]);
        }
    }
}

/// Makes the ends that were computed from silence the true starts of the stretches behind them, and moves the delay
/// values to the end of the last one.
template <int G, int S>
void propagate(const SectionGroup &group, double (&ends)[2 * G][S], double (&starts)[S + 1][2 * G], double *delayLine) {
    double weights[G];
    for (int section = 0; section < G; ++section) {
        weights[section] = weightOfSecond(group.vectorTaps, section);
        for (int stretch = 0; stretch < S; ++stretch) {
            ends[2 * section][stretch] += weights[section] * ends[2 * section + 1][stretch];
        }
    }
    for (int delay = 0; delay < 2 * G; ++delay) {
        starts[0][delay] = 0;
        starts[1][delay] = ends[delay][0];
    }
    for (int stretch = 1; stretch < S; ++stretch) {
        double end[2 * G]; // in registers: each stretch waits for the one before
        for (int delay = 0; delay < 2 * G; ++delay) {
            end[delay] = ends[delay][stretch];
        }
        double second[2 * G] = {}; // two sums, for the same reason
        for (int from = 0; from < 2 * G; from += 2) {
            for (int delay = 0; delay < 2 * G; ++delay) {
                end[delay] += group.transitions[2 * G * from + delay] * starts[stretch][from];
                second[delay] += group.transitions[2 * G * (from + 1) + delay] * starts[stretch][from + 1];
            }
        }
        for (int delay = 0; delay < 2 * G; ++delay) {
            starts[stretch + 1][delay] = end[delay] + second[delay];
        }
    }
    for (int section = 0; section < G; ++section) {
        const double second = starts[S][2 * section + 1];
        delayLine[2 * section] = (starts[S][2 * section] - weights[section] * second) / group.scale[section];
        delayLine[2 * section + 1] = second / group.scale[section];
    }
}

/// Adds to a vector of each of K neighbouring stretches, where their starts have led after n values.
template <int G, int K, bool Weighted>
SONVEX_INLINE void addResponsesAt(long n, const SectionGroup &group, double *dst, long length,
                                  const Doubles (&start)[K][2 * G], Doubles weight) {
    Doubles y[K];
    for (int stretch = 0; stretch < K; ++stretch) {
        y[stretch] = load(dst + stretch * length + n);
    }
    for (int delay = 0; delay < 2 * G; ++delay) {
        const Doubles response = load(group.responses + delay * group.responseStride + n);
        for (int stretch = 0; stretch < K; ++stretch) {
            y[stretch] += (Weighted ? weight * response : response) * start[stretch][delay];
        }
    }
    for (int stretch = 0; stretch < K; ++stretch) {
        store(dst + stretch * length + n, y[stretch]);
    }
}

/// Adds to K neighbouring stretches what their true starts cause.
template <int G, int K>
void addResponses(const SectionGroup &group, double *dst, long length, const double (*starts)[2 * G]) {
    Doubles start[K][2 * G];
    for (int stretch = 0; stretch < K; ++stretch) {
        for (int delay = 0; delay < 2 * G; ++delay) {
            start[stretch][delay] = broadcast(starts[stretch][delay]);
        }
    }
    long n = 0;
    for (; n + doubleLanes <= length; n += doubleLanes) {
        addResponsesAt<G, K, false>(n, group, dst, length, start, Doubles{});
    }
    if (n < length) {
        // The last vector overlaps the one before it: what that one has done weighs nothing.
        double weights[2 * doubleLanes] = {};
        for (int lane = 0; lane < doubleLanes; ++lane) {
            weights[doubleLanes + lane] = 1;
        }
        addResponsesAt<G, K, true>(length - doubleLanes, group, dst, length, start, load(weights + (length - n)));
    }
}

/// Filters a block of stretches * length values and moves the delay values along.
template <int G>
void filterBlock(const SectionGroup &group, const double *src, double *dst, long length, double *delayLine) {
    double ends[2 * G][stretches];
    runStretches<G, vectorsAtATime>(group, length, delayLine, ends, BlockRows{src, dst, length, broadcast(group.gain)});
    double starts[stretches + 1][2 * G];
    propagate<G, stretches>(group, ends, starts, delayLine);
    int stretch = 1;
    for (; stretch + 2 <= stretches; stretch += 2) {
        addResponses<G, 2>(group, dst + stretch * length, length, starts + stretch);
    }
    for (; stretch < stretches; ++stretch) {
        addResponses<G, 1>(group, dst + stretch * length, length, starts + stretch);
    }
}

} // namespace
} // namespace kernels::KERNEL_LEVEL
