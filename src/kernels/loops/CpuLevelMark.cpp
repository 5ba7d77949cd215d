// Tells from the compiler's own flags which level this code is.
#include "kernels/loops/CpuLevelKernels.h"

#if defined(__AVX2__) && defined(__FMA__)
constexpr int compiledLevel = 4;
#elif defined(__AVX__)
constexpr int compiledLevel = 3;
#elif defined(__SSE4_2__)
constexpr int compiledLevel = 2;
#elif defined(__SSSE3__)
constexpr int compiledLevel = 1;
#else
constexpr int compiledLevel = 0;
#endif

int kernels::KERNEL_LEVEL::sonvexKernelLevel() {
    return compiledLevel;
}
