#pragma once

#include <sonvex/ISoundLevelValueConfig.h>

#include "process/configuration/SampleProcessorConfig.h"

namespace process {

/// Configuration of the sound level processor.
class SoundLevelValueConfig : public SampleProcessorConfig<sonvex::iprocess::ISoundLevelValueConfig> {
    Q_OBJECT

public:
    static constexpr char typeName[] = "SoundLevelValueProcessor";

    SoundLevelValueConfig(std::string name, unsigned int sampleAmount);
    SoundLevelValueConfig(std::string name, unsigned int sampleAmount, unsigned int refreshRate);

    /// @throws exceptions::InstanceNotConvertable
    static SoundLevelValueConfig &convert(ProcessorConfigBase &config);

    std::string toString() const override;
};

} // namespace process
