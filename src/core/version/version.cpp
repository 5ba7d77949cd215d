#include <sonvex/version.h>

#include "core/version/VersionInfo.h"

namespace qo::sonvexLib {

unsigned int getInterfaceVersion() {
    return version::interfaceVersion;
}

std::string getVersion() {
    return version::VersionInfo().getVersionString();
}

bool isCompatibleWithInterfaceVersion(unsigned int version) {
    return version == getInterfaceVersion();
}

} // namespace qo::sonvexLib
