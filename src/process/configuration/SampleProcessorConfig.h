#pragma once

#include <utility>

#include "process/configuration/SampleProcessorConfigBase.h"

namespace process {

/// A SampleProcessorConfigBase behind the exported interface of one processor, whose operations reach the same values.
template <class Interface>
class SampleProcessorConfig : public SampleProcessorConfigBase, public Interface {
public:
    using SampleProcessorConfigBase::SampleProcessorConfigBase;

    std::string getProcessorType() const override { return SampleProcessorConfigBase::getProcessorType(); }
    std::string toString() const override { return SampleProcessorConfigBase::toString(); }
    unsigned int getRefreshRate() const override { return SampleProcessorConfigBase::getRefreshRate(); }
    void setRefreshRate(unsigned int rate) override { SampleProcessorConfigBase::setRefreshRate(rate); }
    bool isInternalClockActive() const override { return SampleProcessorConfigBase::isInternalClockActive(); }
    unsigned int getSampleAmount() const override { return SampleProcessorConfigBase::getSampleAmount(); }
    void setSampleAmount(unsigned int amount) override { SampleProcessorConfigBase::setSampleAmount(amount); }
    std::string getClockType() const override { return SampleProcessorConfigBase::getClockType(); }
    void setClockType(std::string type) override { SampleProcessorConfigBase::setClockType(std::move(type)); }
};

} // namespace process
