#pragma once

#include <atomic>

#include <sonvex/IDemoConfig.h>

#include "process/configuration/ProcessorConfigBase.h"

namespace process {

/// Configuration of the sine generator. The amplitude may be set while the generator reads it on its thread.
class DemoConfig : public ProcessorConfigBase, public sonvex::iprocess::IDemoConfig {
    Q_OBJECT

public:
    DemoConfig(std::string name, unsigned int amplitude);

    static std::string getTypeName();
    /// @throws exceptions::InstanceNotConvertable
    static DemoConfig &convert(ProcessorConfigBase &config);

    std::string getProcessorType() const override;
    std::string toString() const override;
    void setAmplitude(unsigned int amplitude) override;
    unsigned int getAmplitude() const override;

private:
    std::atomic<unsigned int> amplitude;
};

} // namespace process
