#pragma once

#include <atomic>
#include <mutex>

#include <sonvex/ISampleProcessorConfigBase.h>

#include "process/configuration/ProcessorConfigBase.h"

namespace process {

/**
 * When a processor calculates, and on how many samples.
 *
 * Threads: setters belong on one thread at a time, the host's, while processors read on their own threads: the numbers
 * are atomic, and a mutex guards the text of the clock type. A value is stored before its notice goes out, so that a
 * processor may see it before it hears of it.
 */
class SampleProcessorConfigBase : public ProcessorConfigBase, public sonvex::iprocess::ISampleProcessorConfigBase {
    Q_OBJECT

public:
    /// On the external clock.
    SampleProcessorConfigBase(std::string name, std::string processorType, unsigned int sampleAmount);
    /// On the internal clock; a refresh rate of 0 warns and gives the external clock.
    SampleProcessorConfigBase(std::string name, std::string processorType, unsigned int sampleAmount,
                              unsigned int refreshRate);

    std::string getProcessorType() const override;
    std::string toString() const override;
    unsigned int getRefreshRate() const override;
    void setRefreshRate(unsigned int refreshRate) override;
    bool isInternalClockActive() const override;
    unsigned int getSampleAmount() const override;
    void setSampleAmount(unsigned int sampleAmount) override;
    std::string getClockType() const override;
    void setClockType(std::string clockType) override;

    /// Announces all values, whether or not they changed: what a new processor sets itself up from.
    virtual void publishConfiguration();

private:
    static constexpr unsigned int defaultRefreshRate = 500;

    std::atomic<unsigned int> refreshRate; ///< in milliseconds, never 0
    mutable std::mutex clockTypeMutex;     ///< guards clockType
    std::string clockType;
    std::atomic<unsigned int> sampleAmount;
};

} // namespace process
