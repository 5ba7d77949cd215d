#pragma once

#include <string>

#include <sonvex/IProcessorConfigBase.h>
#include <sonvex/export.h>

namespace sonvex::iprocess {

/**
 * When a processor calculates, and on how many samples. All values may be changed while the processor runs, from one
 * thread at a time; a change of the clock restarts a running processor.
 *
 * Several processors may share a configuration. Each change reaches all of them, and so does the addition of another
 * processor to it, which restarts those that run.
 */
class SONVEX_EXPORT ISampleProcessorConfigBase : public IProcessorConfigBase {
public:
    ISampleProcessorConfigBase();
    ISampleProcessorConfigBase(const ISampleProcessorConfigBase &);
    ~ISampleProcessorConfigBase() override;
    ISampleProcessorConfigBase &operator=(const ISampleProcessorConfigBase &);

    /// The period of the internal clock in milliseconds.
    virtual unsigned int getRefreshRate() const = 0;
    /// In milliseconds; 0 is refused with a warning.
    virtual void setRefreshRate(unsigned int refreshRate) = 0;
    virtual bool isInternalClockActive() const = 0;
    /// Samples per calculation.
    virtual unsigned int getSampleAmount() const = 0;
    virtual void setSampleAmount(unsigned int sampleAmount) = 0;
    virtual std::string getClockType() const = 0;
    /// "Internal clock" for the timer, "External clock" for the signals of the channel's buffer.
    virtual void setClockType(std::string clockType) = 0;
};

} // namespace sonvex::iprocess
