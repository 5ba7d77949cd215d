#pragma once

#include <sonvex/IProcessorConfigBase.h>

#include "core/data/ConfigurationData.h"

namespace process {

/// Base of all processor configurations: a name and the type of the processor.
class ProcessorConfigBase : public sonvex::ConfigurationData, public sonvex::iprocess::IProcessorConfigBase {
    Q_OBJECT

public:
    ProcessorConfigBase(std::string name, std::string processorType);

    std::string getProcessorType() const override;

private:
    std::string processorType;
};

} // namespace process
