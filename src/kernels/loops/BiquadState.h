#pragma once

#include "kernels/FilterAndVector.h"
#include "kernels/loops/BiquadStretches.h"

/// @file
/// The state of a cascade of second-order sections, and the steps that all who run one share.

struct IppsIIRState_64f {
    Ipp32u id;
    int sectionCount;
    int delayLength;
    int longestStretch;    ///< values, as the table of responses allows; 0 if there are to be no stretches
    long transitionLength; ///< the length of the stretches that the transitions are for, 0 for none
    long lastDecay;        ///< behind so many values the responses to the last section's delay values are nothing
    double *taps;          ///< 5 a section: b0, b1, b2, a1, a2, divided by a0
    double *delayLine;     ///< 2 a section
    double *vectorTaps;    ///< those of the stretches: 5 vectors a section
    double *transitions;   ///< up to 36 values for each group of 3 sections
    double *responses;     ///< 2 rows a section, longestStretch values each
};

namespace kernels::KERNEL_LEVEL {
namespace {

constexpr Ipp32u stateId = 0x49493134;
constexpr int transitionsPerSection = groupDelays * groupDelays / groupSections;
constexpr int shortestStretch = 8; // below, the stretches' ends cost more than their middles save
constexpr double silence = 1e-290; // far below anything audible, and as far above the slow denormal numbers

SONVEX_INLINE bool isState(const IppsIIRState_64f &state) {
    return state.id == stateId;
}

/// Calls the one that is for a group of so many sections: each caller compiles its loops for one, two and three.
template <class One, class Two, class Three>
void bySections(int sections, One one, Two two, Three three) {
    switch (sections) {
    case 1:
        one();
        break;
    case 2:
        two();
        break;
    default:
        three();
        break;
    }
}

SectionGroup groupOf(const IppsIIRState_64f &state, int first) {
    const int left = state.sectionCount - first;
    SectionGroup group = {left < groupSections ? left : groupSections,
                          state.vectorTaps + tapsPerSection * doubleLanes * first,
                          state.responses + 2L * first * state.longestStretch,
                          state.longestStretch,
                          state.transitions + transitionsPerSection * first,
                          1,
                          {},
                          state.lastDecay};
    for (int section = group.sections - 1; section >= 0; --section) {
        group.scale[section] = group.gain;
        group.gain *= state.taps[tapsPerSection * (first + section)];
    }
    return group;
}

template <int G>
void fillTransitions(const SectionGroup &group, double *transitions, long length) {
    ring<G>(group.vectorTaps, length, transitions, [](long, int, double) {});
}

void prepareTransitions(IppsIIRState_64f &state, long length) {
    if (state.transitionLength == length) {
        return;
    }
    for (int first = 0; first < state.sectionCount; first += groupSections) {
        const SectionGroup group = groupOf(state, first);
        double *const to = state.transitions + transitionsPerSection * first;
        bySections(
            group.sections, [&] { fillTransitions<1>(group, to, length); },
            [&] { fillTransitions<2>(group, to, length); }, [&] { fillTransitions<3>(group, to, length); });
    }
    state.transitionLength = length;
}

/// The law itself, every value through all sections.
SONVEX_INLINE double filterValue(const IppsIIRState_64f &state, double x) {
    const double *taps = state.taps;
    double *delays = state.delayLine;
    for (int section = 0; section < state.sectionCount; ++section) {
        const double y = taps[0] * x + delays[0];
        delays[0] = taps[1] * x - taps[3] * y + delays[1];
        delays[1] = taps[2] * x - taps[4] * y;
        x = y;
        taps += tapsPerSection;
        delays += 2;
    }
    return x;
}

/// A dying sound would end in denormal numbers, which many CPUs compute a hundred times slower.
void flushSilence(IppsIIRState_64f &state) {
    for (int delay = 0; delay < state.delayLength; ++delay) {
        double &value = state.delayLine[delay];
        if (value < silence && value > -silence) {
            value = 0;
        }
    }
}

} // namespace
} // namespace kernels::KERNEL_LEVEL
