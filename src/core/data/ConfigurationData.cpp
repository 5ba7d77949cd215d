#include "core/data/ConfigurationData.h"

#include <utility>

namespace sonvex {

ConfigurationData::ConfigurationData(std::string name, QObject *parent)
    : QObject(parent), DataObjectBase(std::move(name)) {}

} // namespace sonvex
