#include <sonvex/ISonvex.h>

#include "core/facade/Registries.h"
#include "core/facade/Sonvex.h"
#include "core/facade/Statics.h"
#include "core/logging/Log.h"
#include "core/version/VersionInfo.h"

ISonvex &ISonvex::createInstance() {
    return statics::sonvex();
}

void ISonvex::destroy() {
    logging::debug("ISonvex::destroy", "Sonvex data will be deleted!");
    if (statics::sonvex().endRun()) {
        statics::registries().clear();
    }
}

sonvex::IVersionInfo &ISonvex::getVersion() {
    return statics::versionInfo();
}
