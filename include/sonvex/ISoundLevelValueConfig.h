#pragma once

#include <string>

#include <sonvex/ISampleProcessorConfigBase.h>
#include <sonvex/export.h>

namespace sonvex::iprocess {

/// The sound levels of a channel. y holds the seven values of SoundLevelValueType, each at its index, in decibels.
class SONVEX_EXPORT ISoundLevelValueConfig : public ISampleProcessorConfigBase {
public:
    /// On the external clock: one result at each signal of the channel's buffer. @p sampleAmount samples a result.
    static ISoundLevelValueConfig &createInstance(std::string name, unsigned int sampleAmount);
    /// On the internal clock, with a period of @p refreshRate milliseconds; 0 warns and gives the external clock.
    static ISoundLevelValueConfig &createInstance(std::string name, unsigned int sampleAmount,
                                                  unsigned int refreshRate);

    ISoundLevelValueConfig();
    ISoundLevelValueConfig(const ISoundLevelValueConfig &);
    ~ISoundLevelValueConfig() override;
    ISoundLevelValueConfig &operator=(const ISoundLevelValueConfig &);
};

} // namespace sonvex::iprocess
