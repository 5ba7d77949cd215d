#pragma once

#include <string>

#include <sonvex/ISampleProcessorConfigBase.h>
#include <sonvex/export.h>

namespace sonvex::iprocess {

/**
 * The sound levels of a channel at 48 kHz. y holds the seven values of SoundLevelValueType, each at its index, in dB
 * relative to a mean square of 1.0: a sine at full scale has -3.01 dB. Silence from the start has minus infinity.
 */
class SONVEX_EXPORT ISoundLevelValueConfig : public ISampleProcessorConfigBase {
public:
    /// On the external clock: one result every six signals of the channel's buffer, the first at the seventh. Without a
    /// gap if @p sampleAmount is six times the signaled amount.
    static ISoundLevelValueConfig &createInstance(std::string name, unsigned int sampleAmount);
    /// On the internal clock, with a period of @p refreshRate milliseconds; 0 warns and gives the external clock. A
    /// level needs to know how many samples are new, so on the internal clock it warns at each tick and gives no
    /// result.
    static ISoundLevelValueConfig &createInstance(std::string name, unsigned int sampleAmount,
                                                  unsigned int refreshRate);

    ISoundLevelValueConfig();
    ISoundLevelValueConfig(const ISoundLevelValueConfig &);
    ~ISoundLevelValueConfig() override;
    ISoundLevelValueConfig &operator=(const ISoundLevelValueConfig &);
};

} // namespace sonvex::iprocess
