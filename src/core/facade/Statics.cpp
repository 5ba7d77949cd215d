#include "core/facade/Statics.h"

#include "core/facade/MetaTypes.h"
#include "core/facade/Registries.h"
#include "core/facade/Sonvex.h"
#include "core/version/VersionInfo.h"
#include "pcapplus/PacketHandlerSlot.h"
#include "pcapplus/PcapDeviceManager.h"
#include "process/configuration/SoundLevelValueTypes.h"

// All objects of the library with a constructor at load and a destructor at unload stand here, because within one file
// the order of both is certain: what the facade needs until its end comes before it.
namespace {

/// Touches what would otherwise be built on first use, and then be destroyed before the facade.
bool buildPrerequisites() {
    pcapplus::PacketHandlerSlot::instance();
    process::soundLevelValueTypes();
    engine::processing::ProcessorFactory::definitionsWithAudioBuffer();
    engine::processing::ProcessorFactory::definitionsWithoutAudioBuffer();
    return true;
}

[[maybe_unused]] const bool prerequisitesBuilt = buildPrerequisites();
MetaTypes theMetaTypes;
version::VersionInfo theVersionInfo;
pcapplus::PcapDeviceManager theDeviceManager;
Registries theRegistries;
Sonvex theSonvex;

} // namespace

namespace statics {

version::VersionInfo &versionInfo() {
    return theVersionInfo;
}

pcapplus::PcapDeviceManager &deviceManager() {
    return theDeviceManager;
}

Registries &registries() {
    return theRegistries;
}

Sonvex &sonvex() {
    return theSonvex;
}

} // namespace statics
