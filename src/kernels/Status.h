#pragma once

/**
 * @file
 * Status codes of the signal kernels and their texts.
 */

#ifdef __cplusplus
extern "C" {
#endif

/// The codes that kernels of this library and their users return; the table of texts knows more.
enum {
    ippStsUnknownStatusCodeErr = -216,
    ippStsIIROrderErr = -25,
    ippStsFftFlagErr = -18,
    ippStsFftOrderErr = -17,
    ippStsStepErr = -16,
    ippStsContextMatchErr = -13,
    ippStsDivByZeroErr = -10,
    ippStsMemAllocErr = -9,
    ippStsNullPtrErr = -8,
    ippStsSizeErr = -6,
    ippStsBadArgErr = -5,
    ippStsNoErr = 0,
    ippStsNonIntelCpu = 20,
    ippStsNotSupportedCpu = 36,
    ippStsFeatureNotSupported = 49,
    ippStsUnknownFeature = 50,
    ippStsFeaturesCombination = 51
};

/**
 * The text of a status, "name: sentence". Never null, valid for the life of the process, from any thread; a code that
 * does not exist has the text of ippStsUnknownStatusCodeErr.
 */
const char *ippGetStatusString(int status);

#ifdef __cplusplus
}
#endif
