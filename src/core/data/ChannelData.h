#pragma once

#include <sonvex/IChannelData.h>

#include "core/data/VectorData.h"

namespace sonvex {

/// A result of a processor: a plain value, copied from thread to thread.
class ChannelData : public DeliveryData, public IChannelData {
public:
    /// "DummyChannel" with default values; Qt's meta-type system needs it.
    ChannelData();
    ChannelData(std::string name, const VectorData &data);

    VectorData &getVectorData() override;
    std::string toString() const override;
    std::string getName() const override;

private:
    VectorData data;
};

} // namespace sonvex
