#include "engine/processing/ProcessorFactory.h"

#include <utility>

#include <sonvex/exceptions.h>

#include "core/logging/Log.h"
#include "process/DemoProcessor.h"
#include "process/SoundLevelValueProcessor.h"
#include "process/SpectrumProcessor.h"
#include "process/WaveformProcessor.h"
#include "process/configuration/DemoConfig.h"
#include "process/configuration/SoundLevelValueConfig.h"
#include "process/configuration/SpectrumConfig.h"
#include "process/configuration/WaveformConfig.h"

namespace engine::processing {

const ProcessorFactory::WithAudioBuffer &ProcessorFactory::definitionsWithAudioBuffer() {
    static const WithAudioBuffer definitions = {
        {process::WaveformConfig::typeName, process::WaveformProcessor::createInstance},
        {process::SpectrumConfig::typeName, process::SpectrumProcessor::createInstance},
        {process::SoundLevelValueConfig::typeName, process::SoundLevelValueProcessor::createInstance}};
    return definitions;
}

const ProcessorFactory::WithoutAudioBuffer &ProcessorFactory::definitionsWithoutAudioBuffer() {
    static const WithoutAudioBuffer definitions = {
        {process::DemoConfig::getTypeName(), process::DemoProcessor::createInstance}};
    return definitions;
}

ProcessorFactory::ProcessorFactory() {
    logging::debug("engine::processing::ProcessorFactory::ProcessorFactory", "Created!");
}

process::Processor *ProcessorFactory::createProcessor(std::string name, process::ProcessorConfigBase &config,
                                                      avb::AvbAudioBuffer &audioBuffer) {
    const auto definition = definitionsWithAudioBuffer().find(config.getProcessorType());
    if (definition == definitionsWithAudioBuffer().end()) {
        const std::string text =
            "There is no definition available to build a processor of type: " + config.getProcessorType();
        logging::refuse<exceptions::InstanceNotCreateable>("engine::processing::ProcessorFactory::createProcessor",
                                                           text);
    }
    return definition->second(std::move(name), config, audioBuffer);
}

} // namespace engine::processing
