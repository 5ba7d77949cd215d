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
    static constexpr char context[] = "ISonvex::destroy";
    Registries &registries = statics::registries();
    logging::debug(context, "Sonvex data will be deleted!");
    statics::sonvex().endRun();
    // Users go before what they use.
    logging::debug(context, "Deleting stream configurations...");
    registries.streams.clear();
    logging::debug(context, "Deleting processor configurations...");
    registries.processes.clear();
    logging::debug(context, "Deleting device configurations...");
    registries.devices.clear();
    logging::debug(context, "Deleting spectrum processor configurations...");
    registries.spectra.clear();
    logging::debug(context, "Deleting waveform processor configurations...");
    registries.waveforms.clear();
    logging::debug(context, "Deleting sound level value processor configurations...");
    registries.soundLevelValues.clear();
    logging::debug(context, "Deleting buffer configurations...");
    registries.buffers.clear();
}

sonvex::IVersionInfo &ISonvex::getVersion() {
    return statics::versionInfo();
}
