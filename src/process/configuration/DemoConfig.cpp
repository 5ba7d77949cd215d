#include "process/configuration/DemoConfig.h"

#include <utility>

#include "process/configuration/convertConfiguration.h"

namespace process {

DemoConfig::DemoConfig(std::string name, unsigned int amplitude)
    : ProcessorConfigBase(std::move(name), getTypeName()), amplitude(amplitude) {}

std::string DemoConfig::getTypeName() {
    return "DemoProcessor";
}

DemoConfig &DemoConfig::convert(ProcessorConfigBase &config) {
    return convertConfiguration<DemoConfig>(config, getTypeName());
}

std::string DemoConfig::getProcessorType() const {
    return ProcessorConfigBase::getProcessorType();
}

std::string DemoConfig::toString() const {
    return getProcessorType() + ": " + getName() + "\n\tAmplitude: " + std::to_string(amplitude);
}

void DemoConfig::setAmplitude(unsigned int newAmplitude) {
    amplitude = newAmplitude;
}

unsigned int DemoConfig::getAmplitude() const {
    return amplitude;
}

} // namespace process
