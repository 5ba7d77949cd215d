#pragma once

#include <sonvex/IProcessConfiguration.h>

#include "process/configuration/ProcessorConfigBase.h"

namespace sonvex {

/// Which processor runs on which channel of which device. Fixed at construction.
class ProcessConfiguration : public ConfigurationData, public IProcessConfiguration {
    Q_OBJECT

public:
    /// @param processorConfig not owned; has to outlive this object
    ProcessConfiguration(std::string name, process::ProcessorConfigBase *processorConfig, std::string deviceMacAddress,
                         unsigned char channelNumber);

    std::string getName() const override;
    process::ProcessorConfigBase &getProcessorConfig() const override;
    std::string getDeviceMacAddress() const override;
    unsigned char getChannelNumber() const override;
    std::string toString() const override;

private:
    process::ProcessorConfigBase *processorConfig;
    std::string deviceMacAddress;
    unsigned char channelNumber;
};

} // namespace sonvex
