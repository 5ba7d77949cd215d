#include <algorithm>
#include <cmath>
#include <map>

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sndfile.h>

#include "common/Refusal.h"
#include "talker/ChannelSignals.h"
#include "talker/Signal.h"
#include "talker/encodeSample.h"

namespace {

using Codes = std::vector<std::int16_t>;

/// Codes of one channel, at every step-th sample from the start on.
Codes codes(const talker::Signal &signal, std::uint64_t start, std::size_t amount, std::uint64_t step = 1,
            unsigned channel = 0) {
    Codes result;
    for (std::size_t i = 0; i < amount; ++i) {
        const double value = signal.value(start + i * step, channel);
        result.push_back(static_cast<std::int16_t>(talker::encodeSample(common::aafFormats[0], value)));
    }
    return result;
}

Codes codes(const std::string &text, std::uint64_t start, std::size_t amount, std::uint64_t step = 1,
            unsigned channel = 0) {
    return codes(talker::Signal::parse(text, 48000), start, amount, step, channel);
}

TEST(Signal, sineFollowsTheFormulaAndIsClippedAtFullScale) {
    EXPECT_EQ(codes("sine:12000:2", 0, 4), Codes({0, 32767, 0, -32768}));
    EXPECT_EQ(codes("sine:1000:0.5", 0, 7), Codes({0, 2139, 4240, 6270, 8192, 9974, 11585}));
    const std::uint64_t oneHour = 3600 * 48000;
    EXPECT_EQ(codes("sine:1000:0.5", oneHour, 480), codes("sine:1000:0.5", 0, 480)) << "the phase must not drift";
}

TEST(Signal, squareChangesItsSignInTheMiddleOfThePeriod) {
    EXPECT_EQ(codes("square:12000:0.25", 0, 5), Codes({8192, 8192, -8192, -8192, 8192}));
    EXPECT_EQ(codes("square:100:1", 239, 3, 120), Codes({32767, -32768, -32768}));
    EXPECT_EQ(codes("square:100:1", 479, 2), Codes({-32768, 32767}));
}

TEST(Signal, rampCountsThroughAllCodesAndEachChannelIsAhead) {
    EXPECT_EQ(codes("ramp", 32766, 3), Codes({32766, 32767, -32768}));
    EXPECT_EQ(codes("ramp", 5, 2, 1, 3), Codes({3005, 3006}));
}

TEST(Signal, noiseFillsItsRangeEvenlyAndIsTheSameAtEveryRun) {
    const Codes noise = codes("noise:0.5", 0, 48000);
    EXPECT_EQ(noise, codes("noise:0.5", 0, 48000));
    EXPECT_NE(noise, codes("noise:0.5", 0, 48000, 1, 1)) << "channels must differ";
    // Pairs of neighbours, each sorted into eighths of the range: 64 kinds of equal probability if they are unrelated.
    std::map<std::pair<double, double>, int> pairs;
    for (std::size_t i = 0; i < noise.size(); i += 2) {
        ++pairs[{std::floor(noise[i] / 4096.1), std::floor(noise[i + 1] / 4096.1)}];
    }
    ASSERT_EQ(pairs.size(), 64U) << "codes beyond the amplitude, or parts of the range without any";
    for (const auto &[kind, count] : pairs) {
        EXPECT_NEAR(count, 24000 / 64, 5 * std::sqrt(24000 / 64)) << kind.first << ", " << kind.second;
    }
}

/// The signal of a stereo file with these values.
template <typename Value, typename Write>
talker::Signal fileSignal(int rate, int format, const std::vector<Value> &values, Write write,
                          int expectedRate = 48000) {
    const QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("a:b.wav")).toStdString();
    SF_INFO info = {0, rate, 2, SF_FORMAT_WAV | format, 0, 0};
    SNDFILE *file = sf_open(path.c_str(), SFM_WRITE, &info);
    write(file, values.data(), static_cast<sf_count_t>(values.size()));
    sf_close(file);
    return talker::Signal::parse("wav:" + path, static_cast<unsigned>(expectedRate));
}

TEST(Signal, audioFileIsPlayedInALoopWithItsChannelsInTurn) {
    for (const int format : {SF_FORMAT_PCM_16, SF_FORMAT_PCM_24}) {
        const auto signal = fileSignal(48000, format, Codes({-32768, 8192, -1, 32767, 0, 16384}), sf_write_short);
        EXPECT_EQ(codes(signal, 0, 5, 1, 0), Codes({-32768, -1, 0, -32768, -1})) << format;
        EXPECT_EQ(codes(signal, 0, 4, 1, 1), Codes({8192, 32767, 16384, 8192})) << format;
        EXPECT_EQ(codes(signal, 3000000001, 2, 1, 5), Codes({32767, 16384})) << format;
    }
}

TEST(Signal, audioFileOfAnotherRateOrWithoutSamplesIsRefused) {
    const auto create = [](int rate, const Codes &values) {
        fileSignal(rate, SF_FORMAT_PCM_16, values, sf_write_short);
    };
    EXPECT_THROW(create(44100, {0, 0}), common::Refusal);
    EXPECT_THROW(create(48000, {}), common::Refusal);
}

/// The bytes of a value in one format after the other.
std::string inEveryFormat(double value) {
    std::string text;
    for (const common::AafFormat &format : common::aafFormats) {
        talker::AafFrame frame({}, {}, talker::FrameFormat{1, 1, format});
        frame.setSample(0, 0, value);
        text += QByteArray::fromRawData(reinterpret_cast<const char *>(frame.data()), static_cast<int>(frame.size()))
                    .mid(talker::AafFrame::headerSize)
                    .toHex()
                    .toStdString() +
                ' ';
    }
    return text;
}

TEST(Signal, valuesKeepTheirResolutionInEveryFormat) {
    const std::vector<double> values = {1.5, -1.5, 1.0, 1.0 / 3, -1.0 / 2147483648.0, 0x5a5a5a5a / 2147483648.0};
    const std::vector<std::string> wire = {"7fff 7fffff 7fffffff 3fc00000 ", "8000 800000 80000000 bfc00000 ",
                                           "7fff 7fffff 7fffffff 3f800000 ", "2aab 2aaaab 2aaaaaab 3eaaaaab ",
                                           "0000 000000 ffffffff b0000000 ", "5a5a 5a5a5a 5a5a5a5a 3f34b4b5 "};
    const auto clipped = [](double value) { return std::clamp(value, -1.0, 1.0 - 1.0 / 2147483648.0); };
    const talker::Signal doubles = fileSignal(48000, SF_FORMAT_DOUBLE, values, sf_write_double);
    std::vector<int> codes;
    for (const double value : values) {
        codes.push_back(static_cast<int>(std::lround(clipped(value) * 2147483648.0)));
    }
    const talker::Signal integers = fileSignal(44100, SF_FORMAT_PCM_32, codes, sf_write_int, 44100);
    for (unsigned i = 0; i < values.size(); ++i) {
        EXPECT_EQ(inEveryFormat(doubles.value(i / 2, i % 2)), wire[i]) << i;
        EXPECT_EQ(integers.value(i / 2, i % 2), codes[i] / 2147483648.0) << i;
    }
    const talker::Signal ramp = talker::Signal::parse("ramp", 192000);
    EXPECT_EQ(inEveryFormat(ramp.value(32766, 0)), "7ffe 7ffe00 7ffe0000 3f7ffc00 ");
    EXPECT_EQ(inEveryFormat(ramp.value(32768, 1)), "83e8 83e800 83e80000 bf783000 ");
    for (const char *text : {"sine:600:0.7", "square:600:0.7"}) {
        EXPECT_EQ(talker::Signal::parse(text, 192000).value(192000 + 4 * 73, 0),
                  talker::Signal::parse(text, 48000).value(73, 0))
            << text;
    }
}

TEST(ChannelSignals, servesChannelsInOrderAndTheRestWithTheLast) {
    const auto secondSample = [](const std::vector<std::string> &texts, unsigned firstChannel = 0) {
        talker::AafFrame frame({}, {}, 4, 2);
        talker::ChannelSignals(texts, 48000).fill(frame, 10, firstChannel);
        Codes result;
        for (const std::uint8_t *byte = frame.data() + frame.size() - 8; byte < frame.data() + frame.size();
             byte += 2) {
            result.push_back(static_cast<std::int16_t>(byte[0] << 8 | byte[1]));
        }
        return result;
    };
    EXPECT_EQ(secondSample({"ramp", "square:0:0.5"}), Codes({11, 16384, 16384, 16384}));
    EXPECT_EQ(secondSample({"ramp", "ramp", "silence", "ramp", "silence"}), Codes({11, 1011, 0, 3011}));
    EXPECT_EQ(secondSample({"ramp", "silence", "square:0:0.5"}, 1), Codes({0, 16384, 16384, 16384}));
    EXPECT_EQ(secondSample({"square:0:0.5"}, 1), Codes({16384, 16384, 16384, 16384}));
}

} // namespace
