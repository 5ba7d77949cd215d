#pragma once

#include <string>

#include <sonvex/ISampleProcessorConfigBase.h>
#include <sonvex/export.h>

namespace sonvex::iprocess {

/// The waveform of a channel. x is the index of a sample in the result, y its value at a full scale of +-1.0.
class SONVEX_EXPORT IWaveformConfig : public ISampleProcessorConfigBase {
public:
    /// On the external clock: one result at each signal of the channel's buffer. @p sampleAmount samples a result.
    static IWaveformConfig &createInstance(std::string name, unsigned int sampleAmount);
    /// On the internal clock, with a period of @p refreshRate milliseconds; 0 warns and gives the external clock.
    static IWaveformConfig &createInstance(std::string name, unsigned int sampleAmount, unsigned int refreshRate);

    IWaveformConfig();
    IWaveformConfig(const IWaveformConfig &);
    ~IWaveformConfig() override;
    IWaveformConfig &operator=(const IWaveformConfig &);
};

} // namespace sonvex::iprocess
