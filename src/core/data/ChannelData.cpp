#include "core/data/ChannelData.h"

#include <utility>

namespace sonvex {

ChannelData::ChannelData() : ChannelData("DummyChannel", VectorData()) {}

ChannelData::ChannelData(std::string name, const VectorData &data) : DeliveryData(std::move(name)), data(data) {}

VectorData &ChannelData::getVectorData() {
    return data;
}

std::string ChannelData::toString() const {
    return DataObjectBase::toString() + "\n" + data.toString();
}

std::string ChannelData::getName() const {
    return DataObjectBase::getName();
}

} // namespace sonvex
