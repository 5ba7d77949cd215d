#include "process/configuration/ProcessorConfigBase.h"

#include <utility>

namespace process {

ProcessorConfigBase::ProcessorConfigBase(std::string name, std::string processorType)
    : ConfigurationData(std::move(name), nullptr), processorType(std::move(processorType)) {}

std::string ProcessorConfigBase::getProcessorType() const {
    return processorType;
}

} // namespace process
