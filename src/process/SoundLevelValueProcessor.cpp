#include "process/SoundLevelValueProcessor.h"

#include <array>
#include <climits>
#include <cmath>
#include <utility>

#include <sonvex/exceptions.h>

#include "avb/AvbAudioBuffer.h"
#include "core/logging/Log.h"
#include "kernels/kernels.h"
#include "process/configuration/SoundLevelValueConfig.h"
#include "process/configuration/SoundLevelValueTypes.h"

namespace process {

namespace {

constexpr std::size_t cyclesPerResult = 6;
constexpr double decibelsPerDecade = 10.0; // of a power ratio

// All for 48 kHz; B0, B1, B2, A0, A1, A2 of each section.
constexpr int sectionsAWeight = 3;
constexpr std::array<double, 6 *sectionsAWeight> tapsAWeight = {
    0.10307251662015915, -0.07544908672571182, -0.027623435482382774, 1.0, -1.9946142435073853,  0.9946214556694031,
    1.183416724205017,   -2.366833448410034,   1.183416724205017,     1.0, -1.89385986328125,    0.8951497673988342,
    4.769514083862305,   -3.4912843704223633,  -1.278229832649231,    1.0, -0.22457602620124817, 0.012608597986400127};
constexpr int sectionsCWeight = 2;
constexpr std::array<double, 6 *sectionsCWeight> tapsCWeight = {
    0.10307244956493378, -0.07544903457164764, -0.027623416855931282, 1.0, -1.994612216949463,   0.9946195483207703,
    4.780937671661377,   -3.4996461868286133,  -1.2812912464141846,   1.0, -0.22422178089618683, 0.012568851001560688};

// Time constants of 125 ms and 1 s.
constexpr double keepFast = 0.999833347221;
constexpr double inputFast = 0.000166652779;
constexpr double keepSlow = 0.999979166884;
constexpr double inputSlow = 2.0833116e-05;

/// The levels of averages, in dB.
std::vector<double> levelsOf(std::vector<double> averages) {
    for (double &value : averages) {
        value = decibelsPerDecade * std::log10(value);
    }
    return averages;
}

} // namespace

SoundLevelValueProcessor::SoundLevelValueProcessor(const std::string &name, SoundLevelValueConfig &config,
                                                   avb::AvbAudioBuffer &audioBuffer)
    : SampleProcessorBase(name, config, audioBuffer, nullptr) {
    config.publishConfiguration();
    logging::debug("process::SoundLevelValueProcessor::SoundLevelValueProcessor", getName(), "Initialized");
}

SoundLevelValueProcessor::~SoundLevelValueProcessor() {
    ippsFree(filterBufferAWeight);
    ippsFree(filterBufferCWeight);
}

Processor *SoundLevelValueProcessor::createInstance(const std::string &name, ProcessorConfigBase &config,
                                                    avb::AvbAudioBuffer &audioBuffer) {
    constexpr unsigned int weightedSampleRate = 48000; // that the weightings' coefficients are for
    if (audioBuffer.getSampleRate() != weightedSampleRate) {
        const std::string text = "Sound levels cannot be calculated by '" + name + "' at a sample rate of " +
                                 std::to_string(audioBuffer.getSampleRate()) + " Hz, only at " +
                                 std::to_string(weightedSampleRate) + " Hz";
        logging::refuse<exceptions::InstanceNotCreateable>("process::SoundLevelValueProcessor::createInstance", text);
    }
    return new SoundLevelValueProcessor(name, SoundLevelValueConfig::convert(config), audioBuffer);
}

void SoundLevelValueProcessor::initFilter() {
    const auto check = [this](IppStatus status, const char *text) {
        if (status != ippStsNoErr) {
            logging::warning("process::SoundLevelValueProcessor::initFilter", getName(), text, status);
        }
    };
    ippsFree(filterBufferAWeight);
    ippsFree(filterBufferCWeight);
    filterStateAWeight = filterStateCWeight = nullptr;
    int size = 0;
    check(ippsIIRGetStateSize_BiQuad_64f(sectionsAWeight, &size), "[1] IPP init error (A-WEIGHT):");
    filterBufferAWeight = ippsMalloc_8u(size);
    check(ippsIIRGetStateSize_BiQuad_64f(sectionsCWeight, &size), "[2] IPP init Error (TAPS):");
    filterBufferCWeight = ippsMalloc_8u(size);
    check(
        ippsIIRInit_BiQuad_64f(&filterStateAWeight, tapsAWeight.data(), sectionsAWeight, nullptr, filterBufferAWeight),
        "[3] IPP init error (A-WEIGHT):");
    check(
        ippsIIRInit_BiQuad_64f(&filterStateCWeight, tapsCWeight.data(), sectionsCWeight, nullptr, filterBufferCWeight),
        "[4] IPP init error (C-WEIGHT):");
}

void SoundLevelValueProcessor::calculate(const std::string & /*bufferName*/, std::size_t sampleAmount) {
    if (!isProcessingActive()) {
        return;
    }
    if (filterStateAWeight == nullptr || filterStateCWeight == nullptr) {
        initFilter();
        return;
    }
    accumulatedSamples += sampleAmount;
    if (accumulatedSamples < cyclesPerResult * sampleAmount) {
        return;
    }
    if (!withMemory("process::SoundLevelValueProcessor::calculate", [this] { deliverLevels(); })) {
        accumulatedSamples = 0; // a block that grew from cycle to cycle would never find memory
    }
}

void SoundLevelValueProcessor::deliverLevels() {
    std::vector<double> peaks(soundLevelValueTypes().size(), 0.0);
    if (!measure(peaks)) {
        return;
    }
    std::vector<double> zeros(peaks.size());
    Q_EMIT newProcessData(
        sonvex::ChannelData(getName(), sonvex::VectorData(std::move(zeros), levelsOf(std::move(peaks)))));
    accumulatedSamples = 0;
}

bool SoundLevelValueProcessor::measure(std::vector<double> &peaks) {
    samples = fetchConfiguredSamples(std::move(samples));
    const std::size_t amount = accumulatedSamples;
    timeWeightedValues.resize(peaks.size());
    const bool hasKernelLength = amount > 0 && amount <= INT_MAX;
    samples.resize(hasKernelLength ? amount : 0);
    const float *const signal = hasKernelLength ? samples.data() : nullptr; // null: refused below, which is logged
    const int length = static_cast<int>(samples.size());
    const auto weigh = [&](IppsIIRState_64f *filter, std::size_t fastIndex, const char *filterError,
                           const char *squareError) {
        const std::size_t slowIndex = fastIndex + 1;
        SonvexAverage fast{keepFast, inputFast, timeWeightedValues[fastIndex], 0.0};
        SonvexAverage slow{keepSlow, inputSlow, timeWeightedValues[slowIndex], 0.0};
        const IppStatus status = sonvexSoundLevel_32f(signal, length, filter, &fast, &slow);
        if (status != ippStsNoErr) {
            logging::warning("process::SoundLevelValueProcessor::calculate", getName(),
                             status == ippStsBadArgErr ? squareError : filterError, status, "size=", amount);
            return false;
        }
        timeWeightedValues[fastIndex] = fast.average;
        timeWeightedValues[slowIndex] = slow.average;
        peaks[fastIndex] = fast.peak;
        peaks[slowIndex] = slow.peak;
        return true;
    };
    static constexpr char zError[] = "[5] IPP SQR error (Z-WEIGHT):";
    if (!weigh(filterStateAWeight, 0, "[1] IPP IIR filter error (A-WEIGHT):", "[2] IPP SQR error (A-WEIGHT):") ||
        !weigh(filterStateCWeight, 2, "[3] IPP IIR filter error (C-WEIGHT):", " [4] IPP SQR error (C-WEIGHT):") ||
        !weigh(nullptr, 4, zError, zError)) {
        return false;
    }
    peaks[6] = peaks[4]; // the full-scale value is the fast unweighted one
    return true;
}

} // namespace process
