#pragma once

#include <sonvex/IProcessorConfigBase.h>
#include <sonvex/export.h>

namespace sonvex::iprocess {

/// The sine generator for tests of a host's display. No operation of ISonvex starts one.
class SONVEX_EXPORT IDemoConfig : public IProcessorConfigBase {
public:
    IDemoConfig();
    IDemoConfig(const IDemoConfig &);
    ~IDemoConfig() override;
    IDemoConfig &operator=(const IDemoConfig &);

    /// Takes effect at the next point.
    virtual void setAmplitude(unsigned int amplitude) = 0;
    virtual unsigned int getAmplitude() const = 0;
};

} // namespace sonvex::iprocess
