#pragma once

#include <string>

#include <sonvex/ISampleProcessorConfigBase.h>
#include <sonvex/export.h>

namespace sonvex::iprocess {

/**
 * The power spectrum of a channel through a Hann window. x is the bin, at x times sample rate / FFT size; y its linear
 * power, one third for a sine at full scale on a bin. The sample amount always follows the FFT size, and the channel's
 * buffer has to hold as many. Order 1, two samples, has no window. A fresh configuration has the order 14. The name of
 * a result is "DummyChannel".
 */
class SONVEX_EXPORT ISpectrumConfig : public ISampleProcessorConfigBase {
public:
    /// On the external clock. The @p sampleAmount gives way to the FFT size.
    static ISpectrumConfig &createInstance(std::string name, unsigned int sampleAmount);
    /// On the internal clock, with a period of @p refreshRate milliseconds; 0 warns and gives the external clock.
    static ISpectrumConfig &createInstance(std::string name, unsigned int sampleAmount, unsigned int refreshRate);

    ISpectrumConfig();
    ISpectrumConfig(const ISpectrumConfig &);
    ~ISpectrumConfig() override;
    ISpectrumConfig &operator=(const ISpectrumConfig &);

    virtual unsigned int getFftOrder() const = 0;
    /// 1 to 31; others are refused with a warning. The transform itself takes orders up to 27.
    virtual void setFftOrder(unsigned int order) = 0;
    /// In samples: 2 to the power of the order.
    virtual unsigned int getFftSize() const = 0;
    /// In samples; a size that is no power of two is refused with a warning.
    virtual void setFftSize(unsigned int size) = 0;
    virtual void setMovingAverageActive(bool active) = 0;
    virtual bool isMovingAverageActive() const = 0;
    /// In cycles of the processor's clock. Of window size and length the one that was set last counts.
    virtual void setMovingAverageWindowSize(unsigned int size) = 0;
    virtual unsigned int getMovingAverageWindowSize() const = 0;
    /// In milliseconds.
    virtual void setMovingAverageWindowLength(unsigned int milliseconds) = 0;
    virtual unsigned int getMovingAverageWindowLength() const = 0;
};

} // namespace sonvex::iprocess
