// A cascade of second-order sections: its state, and the choice between value by value and stretches.
#include <limits.h>
#include <stddef.h>

#include "kernels/levels/Alignment.h"
#include "kernels/levels/BiquadStretches.h"
#include "kernels/levels/Level.h"

struct IppsIIRState_64f {
    Ipp32u id;
    int sectionCount;
    int delayLength;
    int longestStretch;    ///< values, as the table of responses allows; 0 if there are to be no stretches
    long transitionLength; ///< the length of the stretches that the transitions are for, 0 for none
    double *taps;          ///< 5 a section: b0, b1, b2, a1, a2, divided by a0
    double *delayLine;     ///< 2 a section
    double *vectorTaps;    ///< those of the stretches: 5 vectors a section
    double *transitions;   ///< up to 36 values for each group of 3 sections
    double *responses;     ///< 2 rows a section, longestStretch values each
};

namespace kernels::KERNEL_LEVEL {
namespace {

constexpr Ipp32u stateId = 0x49493134;
constexpr size_t alignment = 32;
constexpr int valuesOfResponses = 1024; // for all sections together
constexpr int transitionsPerSection = groupDelays * groupDelays / groupSections;
constexpr int shortestStretch = 8; // below, the stretches' ends cost more than their middles save
constexpr double silence = 1e-290; // far below anything audible, and as far above the slow denormal numbers

static_assert(tapsPerSection * doubleLanes + transitionsPerSection <= 32, "the state's size leaves room for no more");

long long stateBytes(int sections) {
    const long long n = sections;
    return (((40 * n + 15) >> 4) + n) * 16 + (32 * n + 1024) * 8 + 896;
}

/// Calls function with the group as its argument and its number of sections as template argument.
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
    return {left < groupSections ? left : groupSections, state.vectorTaps + tapsPerSection * doubleLanes * first,
            state.responses + 2L * first * state.longestStretch, state.longestStretch,
            state.transitions + transitionsPerSection * first};
}

/// Returns false if a response leaves the range of a double: then it is no use as a factor.
template <int G>
bool fillResponses(const SectionGroup &group, double *responses, long length) {
    double end[4 * G * G];
    ring<G>(group.vectorTaps, length, end,
            [responses, length](long step, int delay, double y) { responses[delay * length + step] = y; });
    double excess = 0; // stays 0 as long as all values are finite
    for (long n = 0; n < 2 * G * length; ++n) {
        excess += responses[n] - responses[n];
    }
    for (const double value : end) {
        excess += value - value;
    }
    return excess == 0;
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

void filterByStretches(IppsIIRState_64f &state, const double *src, double *dst, long length) {
    for (int first = 0; first < state.sectionCount; first += groupSections) {
        const SectionGroup group = groupOf(state, first);
        double *const delays = state.delayLine + 2 * first;
        bySections(
            group.sections, [&] { filterBlock<1>(group, src, dst, length, delays); },
            [&] { filterBlock<2>(group, src, dst, length, delays); },
            [&] { filterBlock<3>(group, src, dst, length, delays); });
        src = dst;
    }
}

/// The law itself, every value through all sections.
void filterByValue(IppsIIRState_64f &state, const double *src, double *dst, long length) {
    for (long n = 0; n < length; ++n) {
        double x = src[n];
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
        dst[n] = x;
    }
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

IppStatus ippsIIRGetStateSize_BiQuad_64f(int numBq, int *pBufferSize) {
    if (pBufferSize == nullptr) {
        return ippStsNullPtrErr;
    }
    if (numBq <= 0 || stateBytes(numBq) > INT_MAX) {
        return ippStsIIROrderErr;
    }
    *pBufferSize = static_cast<int>(stateBytes(numBq));
    return ippStsNoErr;
}

IppStatus ippsIIRInit_BiQuad_64f(IppsIIRState_64f **ppState, const Ipp64f *pTaps, int numBq, const Ipp64f *pDlyLine,
                                 Ipp8u *pBuf) {
    if (ppState == nullptr || pTaps == nullptr || pBuf == nullptr) {
        return ippStsNullPtrErr;
    }
    if (numBq <= 0 || stateBytes(numBq) > INT_MAX) {
        return ippStsIIROrderErr;
    }
    for (long section = 0; section < numBq; ++section) {
        if (pTaps[6 * section] == 0 || pTaps[6 * section + 3] == 0) {
            return ippStsDivByZeroErr;
        }
    }
    Ipp8u *const aligned = alignUp(pBuf, alignment);
    auto *const state = reinterpret_cast<IppsIIRState_64f *>(aligned);
    constexpr size_t headerBytes = alignUp(sizeof(IppsIIRState_64f), alignment);
    static_assert(headerBytes + alignment <= 896, "the state's size leaves room for no more");
    const long n = numBq;
    state->id = stateId;
    state->sectionCount = numBq;
    state->delayLength = 2 * numBq;
    state->longestStretch = valuesOfResponses / 2 / numBq;
    state->transitionLength = 0;
    state->vectorTaps = reinterpret_cast<double *>(aligned + headerBytes);
    state->transitions = state->vectorTaps + tapsPerSection * doubleLanes * n;
    state->responses = state->transitions + transitionsPerSection * n;
    state->taps = state->responses + valuesOfResponses;
    state->delayLine = state->taps + tapsPerSection * n;
    for (long section = 0; section < n; ++section) {
        const double *const given = pTaps + 6 * section;
        const double reciprocal = 1 / given[3];
        const double taps[tapsPerSection] = {given[0] * reciprocal, given[1] * reciprocal, given[2] * reciprocal,
                                             given[4] * reciprocal, given[5] * reciprocal};
        for (int tap = 0; tap < tapsPerSection; ++tap) {
            state->taps[tapsPerSection * section + tap] = taps[tap];
            const double added = tap < 3 ? taps[tap] : -taps[tap];
            store(state->vectorTaps + (tapsPerSection * section + tap) * doubleLanes, broadcast(added));
        }
    }
    for (long delay = 0; delay < 2 * n; ++delay) {
        state->delayLine[delay] = pDlyLine == nullptr ? 0 : pDlyLine[delay];
    }
    const long longest = state->longestStretch;
    bool isStable = longest >= shortestStretch;
    for (int first = 0; isStable && first < numBq; first += groupSections) {
        const SectionGroup group = groupOf(*state, first);
        double *const to = state->responses + 2L * first * longest;
        bySections(
            group.sections, [&] { isStable = fillResponses<1>(group, to, longest); },
            [&] { isStable = fillResponses<2>(group, to, longest); },
            [&] { isStable = fillResponses<3>(group, to, longest); });
    }
    if (!isStable) {
        state->longestStretch = 0;
    }
    *ppState = state;
    return ippStsNoErr;
}

IppStatus ippsIIR_64f(const Ipp64f *pSrc, Ipp64f *pDst, int len, IppsIIRState_64f *pState) {
    if (pState == nullptr || pSrc == nullptr || pDst == nullptr) {
        return ippStsNullPtrErr;
    }
    if (len <= 0) {
        return ippStsSizeErr;
    }
    if (pState->id != stateId) {
        return ippStsContextMatchErr;
    }
    const long longestBlock = static_cast<long>(stretches) * pState->longestStretch;
    long done = 0;
    if (longestBlock > 0 && len >= stretches * shortestStretch) {
        // Blocks of equal length, so that one set of transitions serves all of them.
        const long blocks = (len + longestBlock - 1) / longestBlock;
        const long length = len / blocks / stretches;
        prepareTransitions(*pState, length);
        for (long block = 0; block < blocks; ++block) {
            filterByStretches(*pState, pSrc + done, pDst + done, length);
            done += length * stretches;
        }
    }
    filterByValue(*pState, pSrc + done, pDst + done, len - done);
    flushSilence(*pState);
    return ippStsNoErr;
}

} // namespace kernels::KERNEL_LEVEL
