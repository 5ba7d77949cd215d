// The symmetric Hann window, from both ends at once.
#include <math.h>
#include <stddef.h>

#include "kernels/loops/CpuLevelKernels.h"
#include "kernels/loops/Vector.h"

namespace kernels::KERNEL_LEVEL {
namespace {

constexpr int vectors = 2;                  // made at a time, to hide the latency of the rotation
constexpr int block = vectors * floatLanes; // factors made at a time
constexpr int blocksPerStart = 256;         // the rotation's error grows with each block, so it starts anew in between
constexpr double pi = 3.14159265358979323846;

struct Rotation {
    double cosine;
    double sine;

    static Rotation by(double angle) { return {cos(angle), sin(angle)}; }
    Rotation then(Rotation other) const {
        return {cosine * other.cosine - sine * other.sine, sine * other.cosine + cosine * other.sine};
    }
};

/// sin^2(pi k / (len - 1)) = 0.5 - 0.5 cos(2 pi k / (len - 1)): the square keeps its digits where the difference
/// cancels.
class Factors {
public:
    explicit Factors(int len) : step(pi / (len - 1)) {
        const Rotation one = Rotation::by(step);
        Rotation turned{1, 0};
        double cosines[block];
        double sines[block];
        for (int lane = 0; lane < block; ++lane) {
            cosines[lane] = turned.cosine;
            sines[lane] = turned.sine;
            turned = turned.then(one);
        }
        wholeBlock = turned;
        for (int part = 0; part < 2 * vectors; ++part) {
            cosine[part] = load(cosines + part * doubleLanes);
            sine[part] = load(sines + part * doubleLanes);
        }
    }

    /// The factors of k to k + block - 1; k of successive calls grows by block.
    __attribute__((always_inline)) void next(int k, Floats (&factors)[vectors]) {
        if (untilStart == 0) {
            now = Rotation::by(step * k);
            untilStart = blocksPerStart;
        }
        --untilStart;
        for (int vector = 0; vector < vectors; ++vector) {
            const Doubles low = now.sine * cosine[2 * vector] + now.cosine * sine[2 * vector];
            const Doubles high = now.sine * cosine[2 * vector + 1] + now.cosine * sine[2 * vector + 1];
            factors[vector] = narrow(low * low, high * high);
        }
        now = now.then(wholeBlock);
    }

private:
    double step;
    int untilStart = 0;
    Rotation now{};
    Rotation wholeBlock{};
    Doubles cosine[2 * vectors];
    Doubles sine[2 * vectors];
};

} // namespace

IppStatus ippsWinHann_32f_I(Ipp32f *pSrcDst, int len) {
    if (pSrcDst == nullptr) {
        return ippStsNullPtrErr;
    }
    if (len < 3) {
        return ippStsSizeErr;
    }
    const int end = len / 2; // of the front half; the middle of an odd length keeps its value
    Factors factors(len);
    int k = 1;
    for (; k + block <= end; k += block) {
        Floats made[vectors];
        factors.next(k, made);
        for (int vector = 0; vector < vectors; ++vector) {
            float *const front = pSrcDst + k + vector * floatLanes;
            float *const back = pSrcDst + len - k - (vector + 1) * floatLanes;
            store(front, load(front) * made[vector]);
            store(back, load(back) * reverse(made[vector]));
        }
    }
    if (k < end) {
        Floats made[vectors];
        factors.next(k, made);
        for (int ahead = 0; k + ahead < end; ++ahead) {
            const float factor = made[ahead / floatLanes][ahead % floatLanes];
            pSrcDst[k + ahead] *= factor;
            pSrcDst[len - 1 - k - ahead] *= factor;
        }
    }
    pSrcDst[0] = 0;
    pSrcDst[len - 1] = 0;
    return ippStsNoErr;
}

} // namespace kernels::KERNEL_LEVEL
