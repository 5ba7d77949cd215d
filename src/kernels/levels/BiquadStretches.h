#pragma once

#include "kernels/levels/Vector.h"

/**
 * @file
 * A group of filter sections over a block of signal, faster than its recurrence allows value by value.
 *
 * The block is cut into stretches of equal length that run side by side in the lanes, all but the first from silence.
 * The filter is linear: the true start of a stretch is the true end of the one before it, which is the end that was
 * computed from silence plus the transition matrix times the true start; and what a start adds to the output is the
 * sum of the responses to each delay value alone. Both are known from the taps.
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

/// Taps of a section, each in all lanes.
struct SectionTaps {
    Doubles b0;
    Doubles b1;
    Doubles b2;
    Doubles minusA1;
    Doubles minusA2;
};

/// What a group knows of itself; all of it lives in the filter's state.
struct SectionGroup {
    int sections;
    const double *vectorTaps;  ///< tapsPerSection vectors a section
    const double *responses;   ///< 2 sections rows: the output that a delay value of 1 causes, all others being 0
    long responseStride;       ///< from row to row
    const double *transitions; ///< 2 sections columns: the delay values that such a one has become after a stretch
};

SONVEX_INLINE SectionTaps tapsOf(const double *vectorTaps, int section) {
    const double *const from = vectorTaps + tapsPerSection * doubleLanes * section;
    return {load(from), load(from + doubleLanes), load(from + 2 * doubleLanes), load(from + 3 * doubleLanes),
            load(from + 4 * doubleLanes)};
}

/// One value through one section.
SONVEX_INLINE Doubles runSection(const SectionTaps &taps, Doubles x, Doubles &d0, Doubles &d1) {
    const Doubles y = taps.b0 * x + d0;
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

/// Runs all stretches, the first from the given delay values. Leaves the delay values at their ends.
template <int G>
void runStretches(const double *vectorTaps, const double *src, double *dst, long length, const double *delayLine,
                  double (&ends)[2 * G][stretches]) {
    constexpr int V = vectorsAtATime;
    constexpr int N = doubleLanes;
    Doubles delays[V][2 * G] = {};
    for (int delay = 0; delay < 2 * G; ++delay) {
        delays[0][delay][0] = delayLine[delay];
    }
    long n = 0;
    for (; n + N <= length; n += N) {
        Doubles x[V][N];
        for (int vector = 0; vector < V; ++vector) {
            for (int lane = 0; lane < N; ++lane) {
                x[vector][lane] = load(src + (vector * N + lane) * length + n);
            }
            transpose(x[vector]);
        }
        // One vector after the other needs fewer registers; the CPU runs them at the same time all the same.
        for (int vector = 0; vector < V; ++vector) {
            for (int step = 0; step < N; ++step) {
                x[vector][step] = runGroup<G>(vectorTaps, x[vector][step], delays[vector]);
            }
        }
        for (int vector = 0; vector < V; ++vector) {
            transpose(x[vector]);
            for (int lane = 0; lane < N; ++lane) {
                store(dst + (vector * N + lane) * length + n, x[vector][lane]);
            }
        }
    }
    for (; n < length; ++n) {
        for (int vector = 0; vector < V; ++vector) {
            Doubles x{};
            for (int lane = 0; lane < N; ++lane) {
                x[lane] = src[(vector * N + lane) * length + n];
            }
            x = runGroup<G>(vectorTaps, x, delays[vector]);
            for (int lane = 0; lane < N; ++lane) {
                dst[(vector * N + lane) * length + n] = x[lane];
            }
        }
    }
    for (int delay = 0; delay < 2 * G; ++delay) {
        for (int vector = 0; vector < V; ++vector) {
            store(ends[delay] + vector * N, delays[vector][delay]);
        }
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
    runStretches<G>(group.vectorTaps, src, dst, length, delayLine, ends);
    double weights[G];
    for (int section = 0; section < G; ++section) {
        weights[section] = weightOfSecond(group.vectorTaps, section);
        for (int stretch = 0; stretch < stretches; ++stretch) {
            ends[2 * section][stretch] += weights[section] * ends[2 * section + 1][stretch];
        }
    }
    double starts[stretches + 1][2 * G];
    for (int delay = 0; delay < 2 * G; ++delay) {
        starts[1][delay] = ends[delay][0];
    }
    for (int stretch = 1; stretch < stretches; ++stretch) {
        double end[2 * G]; // in registers: each stretch waits for the one before
        for (int delay = 0; delay < 2 * G; ++delay) {
            end[delay] = ends[delay][stretch];
        }
        for (int from = 0; from < 2 * G; ++from) {
            for (int delay = 0; delay < 2 * G; ++delay) {
                end[delay] += group.transitions[2 * G * from + delay] * starts[stretch][from];
            }
        }
        for (int delay = 0; delay < 2 * G; ++delay) {
            starts[stretch + 1][delay] = end[delay];
        }
    }
    int stretch = 1;
    for (; stretch + 2 <= stretches; stretch += 2) {
        addResponses<G, 2>(group, dst + stretch * length, length, starts + stretch);
    }
    for (; stretch < stretches; ++stretch) {
        addResponses<G, 1>(group, dst + stretch * length, length, starts + stretch);
    }
    for (int section = 0; section < G; ++section) {
        const double second = starts[stretches][2 * section + 1];
        delayLine[2 * section] = starts[stretches][2 * section] - weights[section] * second;
        delayLine[2 * section + 1] = second;
    }
}

} // namespace
} // namespace kernels::KERNEL_LEVEL
