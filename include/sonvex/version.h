#pragma once

#include <string>

#include <sonvex/export.h>

namespace qo::sonvexLib {

/// The version of the exported interface.
SONVEX_EXPORT unsigned int getInterfaceVersion();

/// The version of the library file, as "major.minor.patch.build".
SONVEX_EXPORT std::string getVersion();

/// Whether a host that was built against interface version @p version can use this library.
SONVEX_EXPORT bool isCompatibleWithInterfaceVersion(unsigned int version);

} // namespace qo::sonvexLib
