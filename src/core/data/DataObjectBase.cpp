#include "core/data/DataObjectBase.h"

#include <utility>

namespace sonvex {

DataObjectBase::DataObjectBase(std::string name) : name(std::move(name)) {}

std::string DataObjectBase::toString() const {
    return "[" + name + "]";
}

std::string DataObjectBase::getName() const {
    return name;
}

} // namespace sonvex
