#include "process/configuration/SoundLevelValueConfig.h"

#include <utility>

#include "process/configuration/SoundLevelValueTypes.h"
#include "process/configuration/convertConfiguration.h"

namespace process {

SoundLevelValueConfig::SoundLevelValueConfig(std::string name, unsigned int sampleAmount)
    : SampleProcessorConfig(std::move(name), typeName, sampleAmount) {}

SoundLevelValueConfig::SoundLevelValueConfig(std::string name, unsigned int sampleAmount, unsigned int refreshRate)
    : SampleProcessorConfig(std::move(name), typeName, sampleAmount, refreshRate) {}

SoundLevelValueConfig &SoundLevelValueConfig::convert(ProcessorConfigBase &config) {
    return convertConfiguration<SoundLevelValueConfig>(config, typeName, "' doesn't match ");
}

std::string SoundLevelValueConfig::toString() const {
    std::string text =
        SampleProcessorConfigBase::toString() + "\n\tThe following sound level value types are being generated:";
    for (const auto &entry : soundLevelValueTypes()) {
        text += "\n\t\t" + std::to_string(entry.second.getIndex()) + ": " + entry.second.getDisplayName();
    }
    return text;
}

} // namespace process
