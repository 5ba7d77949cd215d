#pragma once

/**
 * @file
 * All signal kernels.
 */

#include "kernels/Dispatch.h"
#include "kernels/FilterAndVector.h"
#include "kernels/FourierTransform.h"
#include "kernels/PowerSpectrum.h"
#include "kernels/SampleBlocks.h"
#include "kernels/SoundLevel.h"
#include "kernels/Status.h"
