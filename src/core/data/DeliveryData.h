#pragma once

#include "core/data/DataObjectBase.h"

namespace sonvex {

/// Marks what the library delivers to its host.
class DeliveryData : public DataObjectBase {
public:
    using DataObjectBase::DataObjectBase;
};

} // namespace sonvex
