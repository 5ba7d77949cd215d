#pragma once

#include <functional>
#include <map>
#include <string>

namespace avb {
class AvbAudioBuffer;
} // namespace avb
namespace process {
class Processor;
class ProcessorConfigBase;
} // namespace process

namespace engine::processing {

/// Builds a processor by the type name in its configuration. The tables are read-only once the library is loaded.
class ProcessorFactory {
public:
    using WithAudioBuffer =
        std::map<std::string, std::function<process::Processor *(std::string, process::ProcessorConfigBase &,
                                                                 avb::AvbAudioBuffer &)>>;
    using WithoutAudioBuffer =
        std::map<std::string, std::function<process::Processor *(std::string, process::ProcessorConfigBase &)>>;

    /// The processors of a channel, by type name.
    static const WithAudioBuffer &definitionsWithAudioBuffer();
    /// The generators, by type name. No operation of the engine reads them.
    static const WithoutAudioBuffer &definitionsWithoutAudioBuffer();

    ProcessorFactory();

    /// Owned by the caller. @throws exceptions::InstanceNotCreateable for a type without definition
    process::Processor *createProcessor(std::string name, process::ProcessorConfigBase &config,
                                        avb::AvbAudioBuffer &audioBuffer);
};

} // namespace engine::processing
