#pragma once

/**
 * @file
 * Element types of the signal kernels. The kernels are plain C entry points that need nothing but this folder: the
 * caller owns all memory, every result is a status (Status.h), and the code for this CPU is chosen at the first call
 * (Dispatch.h).
 */

typedef unsigned char Ipp8u;
typedef unsigned int Ipp32u;
typedef unsigned long long Ipp64u;
typedef float Ipp32f;
typedef double Ipp64f;

/// A complex number of two 32-bit floats.
typedef struct {
    Ipp32f re;
    Ipp32f im;
} Ipp32fc;

/// Result of a kernel: 0 is success, below 0 nothing was done, above 0 is a warning and the work is done.
typedef int IppStatus;
