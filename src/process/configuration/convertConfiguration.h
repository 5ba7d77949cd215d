#pragma once

#include <string>

#include <sonvex/exceptions.h>

#include "process/configuration/ProcessorConfigBase.h"

namespace process {

/**
 * Turns a base reference into the concrete configuration.
 * @param doesNotMatch the middle of the refusal's text, which differs between the configurations
 * @throws exceptions::InstanceNotConvertable if the configuration reports another type
 * @throws std::bad_cast if it reports the type but is of another class
 */
template <class Configuration>
Configuration &convertConfiguration(ProcessorConfigBase &config, const std::string &typeName,
                                    const char *doesNotMatch = "' doesn't match") {
    if (config.getProcessorType() != typeName) {
        throw exceptions::InstanceNotConvertable("Argument from processor type '" + config.getProcessorType() +
                                                 doesNotMatch + "the processor type '" + typeName +
                                                 "' which is needed for the convert progress!");
    }
    return dynamic_cast<Configuration &>(config);
}

} // namespace process
