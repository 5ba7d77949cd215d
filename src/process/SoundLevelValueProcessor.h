#pragma once

#include <vector>

#include "kernels/FilterAndVector.h"
#include "process/SampleProcessorBase.h"

namespace process {

class ProcessorConfigBase;
class SoundLevelValueConfig;

/**
 * Measures sound levels at 48 kHz in dB relative to a mean square of 1.0: A, C and without weighting, each with fast
 * and slow time weighting, and the full-scale value. A result has seven y values at the indices of the
 * SoundLevelValueTypes, each the highest level within its block.
 *
 * A result comes every six cycles of the external clock, from the block that the last of them fetches: the configured
 * amount of samples has to be six times that of a cycle, or samples are left out or replaced by silence. Under the
 * internal clock there is none. Filters and averages run on from block to block, across a stop too.
 *
 * Threads: as its base; what is here is touched on the processor's thread alone.
 */
class SoundLevelValueProcessor : public SampleProcessorBase {
    Q_OBJECT

public:
    ~SoundLevelValueProcessor() override;

    /// Owned by the caller. @throws exceptions::InstanceNotConvertable
    static Processor *createInstance(const std::string &name, ProcessorConfigBase &config,
                                     avb::AvbAudioBuffer &audioBuffer);

protected Q_SLOTS:
    /// @param sampleAmount of new samples that the cycle stands for
    void calculate(const std::string &bufferName = "InternalClock", std::size_t sampleAmount = 0) override;

private:
    SoundLevelValueProcessor(const std::string &name, SoundLevelValueConfig &config, avb::AvbAudioBuffer &audioBuffer);

    void initFilter();
    void deliverLevels();
    /// Runs the accumulated amount of samples, or silence for those that are not there, through filters and averages.
    /// @param peaks receives the highest averages, by the types' indices
    /// @return false, with a warning, where a kernel refuses: for an amount of 0, or of more than an int holds
    bool measure(std::vector<double> &peaks);

    IppsIIRState_64f *filterStateAWeight = nullptr;
    Ipp8u *filterBufferAWeight = nullptr;
    IppsIIRState_64f *filterStateCWeight = nullptr;
    Ipp8u *filterBufferCWeight = nullptr;
    std::vector<float> samples;             ///< the latest block
    std::vector<double> timeWeightedValues; ///< the running averages, by the types' indices
    std::size_t accumulatedSamples = 0;     ///< since the last analysis
};

} // namespace process
