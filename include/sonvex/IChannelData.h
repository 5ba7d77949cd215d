#pragma once

#include <string>

#include <sonvex/IVectorData.h>
#include <sonvex/export.h>

namespace sonvex {

/// One result of a processor. A host's callback gets it by reference; it lives as long as the call.
class SONVEX_EXPORT IChannelData {
public:
    IChannelData();
    IChannelData(const IChannelData &);
    virtual ~IChannelData();
    IChannelData &operator=(const IChannelData &);

    /// The values; valid as long as this object.
    virtual IVectorData &getVectorData() = 0;
    virtual std::string toString() const = 0;
    /// The name of the process configuration that made the processor; "DummyChannel" for a spectrum.
    virtual std::string getName() const = 0;
};

} // namespace sonvex
