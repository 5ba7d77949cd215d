#pragma once

#include <sonvex/IWaveformConfig.h>

#include "process/configuration/SampleProcessorConfig.h"

namespace process {

/// Configuration of the waveform processor.
class WaveformConfig : public SampleProcessorConfig<sonvex::iprocess::IWaveformConfig> {
    Q_OBJECT

public:
    static constexpr char typeName[] = "WaveformProcessor";

    WaveformConfig(std::string name, unsigned int sampleAmount);
    WaveformConfig(std::string name, unsigned int sampleAmount, unsigned int refreshRate);

    /// @throws exceptions::InstanceNotConvertable
    static WaveformConfig &convert(ProcessorConfigBase &config);

    std::string toString() const override;
};

} // namespace process
