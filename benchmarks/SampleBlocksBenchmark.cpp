// One call that takes the samples of an audio frame apart, against a plain loop that does so sample by sample.
#include <cstdint>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "CpuLevelBenchmarks.h"
#include "RatioReporter.h"

namespace {

struct Frame {
    Frame(int channels, int len, int bytes)
        : channels(channels), len(len), samples(static_cast<std::size_t>(channels * len * bytes)),
          planes(static_cast<std::size_t>(channels * len)) {
        std::mt19937 random(1);
        for (Ipp8u &byte : samples) {
            byte = static_cast<Ipp8u>(random() & 0x77U); // no float that would be replaced
        }
    }

    int channels;
    int len;
    std::vector<Ipp8u> samples;
    std::vector<float> planes;
    int replaced = 0;
};

float valueOf(std::uint32_t code) {
    return static_cast<float>(static_cast<std::int32_t>(code)) * 0x1p-31F;
}

struct From16 {
    static constexpr int bytes = 2;
    float operator()(const Ipp8u *at) const {
        return valueOf(std::uint32_t{at[0]} << 24U | std::uint32_t{at[1]} << 16U);
    }
};

struct From24 {
    static constexpr int bytes = 3;
    float operator()(const Ipp8u *at) const {
        return valueOf(std::uint32_t{at[0]} << 24U | std::uint32_t{at[1]} << 16U | std::uint32_t{at[2]} << 8U);
    }
};

std::uint32_t wordAt(const Ipp8u *at) {
    std::uint32_t word = 0;
    std::memcpy(&word, at, sizeof word);
    return __builtin_bswap32(word);
}

struct From32 {
    static constexpr int bytes = 4;
    float operator()(const Ipp8u *at) const { return valueOf(wordAt(at)); }
};

struct FromFloat {
    static constexpr int bytes = 4;
    int &replaced;
    float operator()(const Ipp8u *at) const {
        const std::uint32_t code = wordAt(at);
        float value = 0;
        if ((code & 0x7F800000U) == 0x7F800000U) {
            ++replaced;
        } else {
            std::memcpy(&value, &code, sizeof value);
        }
        return value;
    }
};

template <class Read>
void sampleBySample(Frame &frame, Read read) {
    const std::ptrdiff_t channels = frame.channels;
    const std::ptrdiff_t len = frame.len;
    for (std::ptrdiff_t channel = 0; channel < channels; ++channel) {
        const Ipp8u *from = frame.samples.data() + channel * Read::bytes;
        float *const to = frame.planes.data() + channel * len;
        for (std::ptrdiff_t n = 0; n < len; ++n) {
            to[n] = read(from);
            from += channels * Read::bytes;
        }
    }
}

struct Format {
    const char *name;
    int bytes;
    void (*plainLoop)(Frame &frame);
    void (*kernel)(Frame &frame);
};

template <IppStatus (*kernel)(const Ipp8u *, int, int, Ipp32f *, int)>
void callKernel(Frame &f) {
    kernel(f.samples.data(), f.channels, f.len, f.planes.data(), f.len);
}

const Format formats[] = {
    {"int16", 2, [](Frame &f) { sampleBySample(f, From16()); }, callKernel<sonvexDeinterleave_16s32f>},
    {"int24", 3, [](Frame &f) { sampleBySample(f, From24()); }, callKernel<sonvexDeinterleave_24s32f>},
    {"int32", 4, [](Frame &f) { sampleBySample(f, From32()); }, callKernel<sonvexDeinterleave_32s32f>},
    {"float", 4,
     [](Frame &f) {
         f.replaced = 0;
         sampleBySample(f, FromFloat{f.replaced});
     },
     [](Frame &f) {
         sonvexDeinterleave_32f(f.samples.data(), f.channels, f.len, f.planes.data(), f.len, &f.replaced);
     }}};

} // namespace

int main(int argc, char **argv) {
    struct Shape {
        int channels;
        int len;
    };
    for (const Shape &shape : {Shape{2, 6}, {8, 6}, {8, 48}, {60, 6}}) {
        for (const Format &format : formats) {
            const auto frame = std::make_shared<Frame>(shape.channels, shape.len, format.bytes);
            const std::string row =
                std::to_string(shape.channels) + "x" + std::to_string(shape.len) + " " + format.name;
            registerPeer("frames", "plain loop", row, [=] { format.plainLoop(*frame); });
            registerAtAllLevels("frames", row, [=] { return [=] { format.kernel(*frame); }; });
        }
    }
    return runRatioBenchmarks(argc, argv, {"plain loop"});
}
