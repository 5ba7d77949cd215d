// A cascade of second-order sections: the making of its state, and the choice between value by value and stretches.
#include <limits.h>
#include <stddef.h>

#include "kernels/loops/Alignment.h"
#include "kernels/loops/BiquadState.h"
#include "kernels/loops/CpuLevelKernels.h"

namespace kernels::KERNEL_LEVEL {
namespace {

constexpr size_t alignment = 32;
constexpr int valuesOfResponses = 1024; // for all sections together

static_assert(tapsPerSection * doubleLanes + transitionsPerSection <= 32, "the state's size leaves room for no more");

long long stateBytes(int sections) {
    const long long n = sections;
    return (((40 * n + 15) >> 4) + n) * 16 + (32 * n + 1024) * 8 + 896;
}

bool isModest(double factor) {
    const double magnitude = factor < 0 ? -factor : factor;
    return magnitude > 1e-100 && magnitude < 1e100;
}

/// Returns false if the taps are so large or small that their products come near the ends of a double's range.
bool isModest(const SectionGroup &group) {
    bool areModest = isModest(group.gain);
    for (int section = 0; section < group.sections; ++section) {
        areModest = areModest && isModest(group.scale[section]);
    }
    return areModest;
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

/// How many values it takes until the responses to a section's delay values have all but vanished.
long decayOf(const double *responses, long length) {
    constexpr double nothing = 1e-30; // of the largest value: far below the last digit of anything they are added to
    double largest = 0;
    long decay = 0;
    for (long n = 0; n < length; ++n) {
        const double values[2] = {responses[n], responses[length + n]};
        for (const double value : values) {
            const double magnitude = value < 0 ? -value : value;
            largest = magnitude > largest ? magnitude : largest;
            decay = magnitude > nothing * largest ? n + 1 : decay;
        }
    }
    return decay;
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
            const double normalised = tap < 3 ? taps[tap] / taps[0] : -taps[tap];
            store(state->vectorTaps + (tapsPerSection * section + tap) * doubleLanes, broadcast(normalised));
        }
    }
    for (long delay = 0; delay < 2 * n; ++delay) {
        state->delayLine[delay] = pDlyLine == nullptr ? 0 : pDlyLine[delay];
    }
    const long longest = state->longestStretch;
    bool isStable = longest >= shortestStretch;
    for (int first = 0; isStable && first < numBq; first += groupSections) {
        const SectionGroup group = groupOf(*state, first);
        if (!isModest(group)) {
            isStable = false;
            break;
        }
        double *const to = state->responses + 2L * first * longest;
        bySections(
            group.sections, [&] { isStable = fillResponses<1>(group, to, longest); },
            [&] { isStable = fillResponses<2>(group, to, longest); },
            [&] { isStable = fillResponses<3>(group, to, longest); });
    }
    if (!isStable) {
        state->longestStretch = 0;
    }
    state->lastDecay = isStable ? decayOf(state->responses + 2 * (n - 1) * longest, longest) : 0;
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
    if (!isState(*pState)) {
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
    for (; done < len; ++done) {
        pDst[done] = filterValue(*pState, pSrc[done]);
    }
    flushSilence(*pState);
    return ippStsNoErr;
}

} // namespace kernels::KERNEL_LEVEL
