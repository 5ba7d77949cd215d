#include "process/configuration/WaveformConfig.h"

#include <utility>

#include "process/configuration/convertConfiguration.h"

namespace process {

WaveformConfig::WaveformConfig(std::string name, unsigned int sampleAmount)
    : SampleProcessorConfig(std::move(name), typeName, sampleAmount) {}

WaveformConfig::WaveformConfig(std::string name, unsigned int sampleAmount, unsigned int refreshRate)
    : SampleProcessorConfig(std::move(name), typeName, sampleAmount, refreshRate) {}

WaveformConfig &WaveformConfig::convert(ProcessorConfigBase &config) {
    return convertConfiguration<WaveformConfig>(config, typeName);
}

std::string WaveformConfig::toString() const {
    return getProcessorType() + ": " + getName() + "\n" + SampleProcessorConfigBase::toString();
}

} // namespace process
