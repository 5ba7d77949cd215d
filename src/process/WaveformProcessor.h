#pragma once

#include "core/data/ChannelData.h"
#include "process/SampleProcessorBase.h"

namespace process {

class ProcessorConfigBase;
class WaveformConfig;

/// Delivers the configured amount of samples unchanged: x is the index of a sample, y its value. Threads as its base.
class WaveformProcessor : public SampleProcessorBase {
    Q_OBJECT

public:
    ~WaveformProcessor() override;

    /// Owned by the caller. @throws exceptions::InstanceNotConvertable
    static Processor *createInstance(const std::string &name, ProcessorConfigBase &config,
                                     avb::AvbAudioBuffer &audioBuffer);

    std::string toString() const override;

private Q_SLOTS:
    void calculate(const std::string &clockName = "InternalClock", std::size_t sampleAmount = 0) override;

private:
    WaveformProcessor(const std::string &name, WaveformConfig &config, avb::AvbAudioBuffer &audioBuffer);

    void deliverCurve();

    std::vector<float> samples;  ///< the latest block
    sonvex::ChannelData curve;   ///< the latest result
    std::size_t indexAmount = 0; ///< its x values
};

} // namespace process
