#include <cmath>
#include <complex>
#include <cstdlib>
#include <map>
#include <thread>
#include <vector>

#include "CpuLevels.h"
#include "KernelMemory.h"
#include "ReferenceTransform.h"
#include "noise.h"

namespace {

using support::Bins;
using support::Guarded;
using Samples = std::vector<float>;

/// The highest order tried; emulators are given a lower one.
int highestOrder() {
    const char *const order = std::getenv("SONVEX_TEST_MAX_ORDER");
    return order == nullptr ? 20 : std::atoi(order);
}

struct Sizes {
    int spec = -1;
    int specBuffer = -1;
    int buffer = -1;
};

/// Tables and a work buffer of exactly the sizes that were asked for.
class Transform {
public:
    explicit Transform(int order, int flag = IPP_FFT_DIV_FWD_BY_N, std::size_t misalignment = 0)
        : order(order), sizes(sizesOf(order, flag)), memory(static_cast<std::size_t>(sizes.spec), misalignment),
          buffer(static_cast<std::size_t>(sizes.buffer), misalignment) {
        Guarded<Ipp8u> specBuffer(static_cast<std::size_t>(sizes.specBuffer));
        Ipp8u *const scratch = sizes.specBuffer > 0 ? specBuffer.get() : nullptr;
        EXPECT_EQ(ippsFFTInit_R_32f(&spec, order, flag, ippAlgHintNone, memory.get(), scratch), ippStsNoErr);
        EXPECT_TRUE(specBuffer.isIntact());
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(spec) % 64, 0U);
    }

    static Sizes sizesOf(int order, int flag) {
        Sizes sizes;
        EXPECT_EQ(ippsFFTGetSize_R_32f(order, flag, ippAlgHintFast, &sizes.spec, &sizes.specBuffer, &sizes.buffer),
                  ippStsNoErr);
        return sizes;
    }

    std::size_t length() const { return std::size_t{1} << order; }

    /// A single sample has but one bin.
    std::size_t floats() const { return order == 0 ? 2 : length() + 2; }

    int run(const float *samples, float *bins) {
        return ippsFFTFwd_RToCCS_32f(samples, bins, spec, sizes.buffer > 0 ? buffer.get() : nullptr);
    }

    /// The packed spectrum, with everything around it checked.
    Samples operator()(const Samples &samples, std::size_t misalignment = 0) {
        Guarded<float> from(length(), misalignment);
        Guarded<float> to(floats(), misalignment);
        from.fill(samples);
        const std::vector<Ipp8u> before = memory.values();
        EXPECT_EQ(run(from.get(), to.get()), ippStsNoErr);
        EXPECT_EQ(from.values(), samples);
        EXPECT_TRUE(memory.values() == before) << "the transform wrote into its tables";
        EXPECT_TRUE(from.isIntact() && to.isIntact() && memory.isIntact() && buffer.isIntact()) << "order " << order;
        EXPECT_EQ(to[1], 0.0F);
        EXPECT_EQ(to[floats() - 1], 0.0F);
        return to.values();
    }

    const IppsFFTSpec_R_32f *get() const { return spec; }

    int order;
    Sizes sizes;

private:
    Guarded<Ipp8u> memory;
    Guarded<Ipp8u> buffer;
    IppsFFTSpec_R_32f *spec = nullptr;
};

std::complex<double> bin(const Samples &packed, std::size_t k) {
    return {packed[2 * k], packed[2 * k + 1]};
}

/// Root mean square of the error, relative to that of the reference, and its largest value.
struct Error {
    Error(const Samples &packed, const Bins &reference) {
        double power = 0;
        double errors = 0;
        for (std::size_t k = 0; k < reference.size(); ++k) {
            const double error = std::norm(bin(packed, k) - reference[k]);
            errors += error;
            power += std::norm(reference[k]);
            largest = std::max(largest, error);
        }
        rms = std::sqrt(errors / power);
        largest = std::sqrt(largest / power * static_cast<double>(reference.size()));
    }

    double rms;
    double largest = 0;
};

/// The spectrum of noise, made once for all levels.
const Bins &noiseBins(int order) {
    static std::map<int, Bins> all;
    Bins &bins = all[order];
    if (bins.empty()) {
        bins = support::transformByHalving(support::noise<float>(std::size_t{1} << order));
    }
    return bins;
}

class FourierTransform : public support::AtLevel {};
SONVEX_AT_ALL_LEVELS(FourierTransform);

TEST_P(FourierTransform, hasSinglePrecisionForNoiseOfEveryOrder) {
    for (int order = 1; order <= highestOrder(); ++order) {
        Transform transform(order, IPP_FFT_NODIV_BY_ANY);
        const Error error(transform(support::noise<float>(transform.length())), noiseBins(order));
        const double bound = order <= 10 ? 1.4e-7 : order <= 14 ? 1.5e-7 : 2e-7;
        EXPECT_LT(error.rms, bound) << "order " << order;
        EXPECT_LT(error.largest, 6 * bound) << "order " << order;
    }
}

TEST_P(FourierTransform, turnsAnImpulseAtAnyPositionIntoARotation) {
    for (int order = 0; order <= highestOrder(); ++order) {
        Transform transform(order);
        const std::size_t length = transform.length();
        const std::size_t step = order <= 7 ? 1 : order <= 12 ? length / 5 + 3 : length / 2 + 3;
        for (std::size_t position = 0; position < length; position += step) {
            Samples samples(length);
            samples[position] = static_cast<float>(length);
            const Samples packed = transform(samples);
            for (std::size_t k = 0; k <= length / 2; ++k) {
                const auto expected = support::rootOfUnity(position * k, length);
                ASSERT_LT(std::abs(bin(packed, k) - expected), 5e-7)
                    << "order " << order << ", position " << position << ", bin " << k;
                if (position == 0) {
                    ASSERT_EQ(bin(packed, k), 1.0) << "order " << order << ", bin " << k;
                }
            }
        }
    }
}

TEST_P(FourierTransform, turnsAConstantIntoBinZeroAlone) {
    for (int order = 0; order <= highestOrder(); ++order) {
        Transform transform(order);
        Samples expected(transform.floats());
        expected[0] = 1;
        EXPECT_TRUE(transform(Samples(transform.length(), 1.0F)) == expected) << "order " << order;
    }
}

TEST_P(FourierTransform, scalesByItsFlag) {
    for (const int order : {0, 1, 4, 5, 7, 9, 12, 15}) {
        const double length = std::exp2(order);
        const std::pair<int, double> scales[] = {{IPP_FFT_DIV_FWD_BY_N, 1 / length},
                                                 {IPP_FFT_DIV_INV_BY_N, 1},
                                                 {IPP_FFT_DIV_BY_SQRTN, 1 / std::sqrt(length)},
                                                 {IPP_FFT_NODIV_BY_ANY, 1}};
        for (const auto &[flag, scale] : scales) {
            Transform transform(order, flag);
            Bins expected = noiseBins(order);
            for (auto &value : expected) {
                value *= scale;
            }
            EXPECT_LT(Error(transform(support::noise<float>(transform.length())), expected).rms, 1.8e-7)
                << "order " << order << ", flag " << flag;
        }
    }
}

TEST_P(FourierTransform, givesTheSameBitsInPlaceAndAtAnyAlignment) {
    for (int order = 0; order <= std::min(18, highestOrder()); ++order) {
        Transform transform(order);
        const Samples samples = support::noise<float>(transform.length());
        const Samples expected = transform(samples);
        for (const std::size_t misalignment : {4U, 8U, 20U, 60U}) {
            Transform shifted(order, IPP_FFT_DIV_FWD_BY_N, misalignment);
            EXPECT_TRUE(shifted(samples, misalignment) == expected) << "order " << order;
        }
        for (const std::size_t misalignment : {0U, 12U}) {
            Guarded<float> both(transform.floats(), misalignment);
            both.fill(samples);
            EXPECT_EQ(transform.run(both.get(), both.get()), ippStsNoErr);
            EXPECT_TRUE(both.values() == expected) << "order " << order << " in place";
            EXPECT_TRUE(both.isIntact());
        }
    }
}

/// In place and with a reference that needs no memory, so that it can be tried up to the highest order of all.
TEST_P(FourierTransform, addsUpTheRotationsOfThreeImpulsesInPlace) {
    for (const int order : {8, 15, highestOrder()}) {
        Transform transform(order, IPP_FFT_NODIV_BY_ANY);
        const std::size_t length = transform.length();
        const std::pair<std::size_t, float> impulses[] = {{1, 0.5F}, {length / 3, 2.0F}, {length - 2, -1.0F}};
        Samples both(length + 2);
        for (const auto &[position, height] : impulses) {
            both[position] = height;
        }
        ASSERT_EQ(transform.run(both.data(), both.data()), ippStsNoErr);
        for (std::size_t k = 0; k <= length / 2; ++k) {
            std::complex<double> expected;
            for (const auto &[position, height] : impulses) {
                const double turns = static_cast<double>(position * k % length) / static_cast<double>(length);
                expected += std::polar(static_cast<double>(height), -4 * std::acos(0.0) * turns);
            }
            ASSERT_LT(std::abs(bin(both, k) - expected), 2e-6) << "order " << order << ", bin " << k;
        }
    }
}

TEST_P(FourierTransform, servesTwoThreadsWithABufferEach) {
    for (const int order : {11, 15}) {
        Transform transform(order);
        const Samples samples = support::noise<float>(transform.length());
        const Samples expected = transform(samples);
        const auto work = [&](int &differences) {
            Guarded<Ipp8u> buffer(static_cast<std::size_t>(transform.sizes.buffer));
            Samples packed(transform.length() + 2);
            for (int round = 0; round < 20; ++round) {
                ippsFFTFwd_RToCCS_32f(samples.data(), packed.data(), transform.get(), buffer.get());
                differences += packed == expected ? 0 : 1;
            }
        };
        int differences[2] = {};
        std::thread other(work, std::ref(differences[0]));
        work(differences[1]);
        other.join();
        EXPECT_EQ(differences[0] + differences[1], 0);
    }
}

TEST_P(FourierTransform, refusesSizeQueriesInTheOrderOfTheirFaults) {
    Sizes sizes;
    const auto query = [&sizes](int order, int flag, int missing) {
        int *pointers[] = {&sizes.spec, &sizes.specBuffer, &sizes.buffer, nullptr};
        pointers[missing] = nullptr;
        return ippsFFTGetSize_R_32f(order, flag, 0, pointers[0], pointers[1], pointers[2]);
    };
    const int none = 3;
    for (const int missing : {0, 1, 2}) {
        EXPECT_EQ(query(-1, 0, missing), ippStsFftOrderErr);
        EXPECT_EQ(query(5, 0, missing), ippStsNullPtrErr);
    }
    for (const int order : {30, 31}) {
        EXPECT_EQ(query(order, 1, none), ippStsFftOrderErr);
    }
    for (const int flag : {0, 3, 16}) {
        EXPECT_EQ(query(5, flag, none), ippStsFftFlagErr);
    }
    EXPECT_TRUE(sizes.spec == -1 && sizes.specBuffer == -1 && sizes.buffer == -1);
    const Sizes largest = Transform::sizesOf(29, IPP_FFT_DIV_FWD_BY_N);
    EXPECT_TRUE(largest.spec > 0 && largest.specBuffer > 0 && largest.buffer > 0);
}

TEST_P(FourierTransform, refusesToMakeTablesInTheOrderOfTheFaults) {
    Guarded<Ipp8u> memory(static_cast<std::size_t>(Transform::sizesOf(12, 1).spec));
    Guarded<Ipp8u> buffer(1 << 16);
    IppsFFTSpec_R_32f *spec = nullptr;
    EXPECT_EQ(ippsFFTInit_R_32f(nullptr, -1, 0, 0, memory.get(), buffer.get()), ippStsNullPtrErr);
    EXPECT_EQ(ippsFFTInit_R_32f(&spec, 30, 0, 0, nullptr, buffer.get()), ippStsNullPtrErr);
    EXPECT_EQ(ippsFFTInit_R_32f(&spec, -1, 0, 0, memory.get(), buffer.get()), ippStsFftOrderErr);
    EXPECT_EQ(ippsFFTInit_R_32f(&spec, 30, 1, 0, memory.get(), buffer.get()), ippStsFftOrderErr);
    EXPECT_EQ(ippsFFTInit_R_32f(&spec, 12, 0, 0, memory.get(), nullptr), ippStsFftFlagErr);
    EXPECT_EQ(ippsFFTInit_R_32f(&spec, 12, 3, 0, memory.get(), buffer.get()), ippStsFftFlagErr);
    EXPECT_EQ(ippsFFTInit_R_32f(&spec, 11, 1, 0, memory.get(), nullptr), ippStsNullPtrErr);
    EXPECT_TRUE(spec == nullptr && memory.isUntouched() && buffer.isUntouched());
    EXPECT_EQ(ippsFFTInit_R_32f(&spec, 10, 1, 0, memory.get(), nullptr), ippStsNoErr);
}

TEST_P(FourierTransform, refusesTransformsInTheOrderOfTheirFaultsAndWritesNothing) {
    Transform transform(9);
    Guarded<Ipp8u> noSpec(4096);
    Guarded<float> bins(514);
    Guarded<Ipp8u> buffer(static_cast<std::size_t>(transform.sizes.buffer));
    const Samples samples(512, 1.0F);
    const auto *const wrong = reinterpret_cast<const IppsFFTSpec_R_32f *>(noSpec.get());
    EXPECT_EQ(ippsFFTFwd_RToCCS_32f(nullptr, nullptr, nullptr, nullptr), ippStsNullPtrErr);
    EXPECT_EQ(ippsFFTFwd_RToCCS_32f(nullptr, nullptr, wrong, nullptr), ippStsContextMatchErr);
    EXPECT_EQ(ippsFFTFwd_RToCCS_32f(samples.data(), bins.get(), wrong, buffer.get()), ippStsContextMatchErr);
    EXPECT_EQ(ippsFFTFwd_RToCCS_32f(nullptr, bins.get(), transform.get(), buffer.get()), ippStsNullPtrErr);
    EXPECT_EQ(ippsFFTFwd_RToCCS_32f(samples.data(), nullptr, transform.get(), buffer.get()), ippStsNullPtrErr);
    EXPECT_EQ(ippsFFTFwd_RToCCS_32f(samples.data(), bins.get(), transform.get(), nullptr), ippStsNullPtrErr);
    EXPECT_TRUE(bins.isUntouched() && buffer.isUntouched());
}

} // namespace
