#include "core/version/VersionInfo.h"

namespace version {

int VersionInfo::getMajorVersion() const {
    return SONVEX_VERSION_MAJOR;
}

int VersionInfo::getMinorVersion() const {
    return SONVEX_VERSION_MINOR;
}

int VersionInfo::getPatchVersion() const {
    return SONVEX_VERSION_PATCH;
}

int VersionInfo::getBuildVersion() const {
    return SONVEX_VERSION_BUILD;
}

std::string VersionInfo::getVersionString() const {
    return std::to_string(getMajorVersion()) + "." + std::to_string(getMinorVersion()) + "." +
           std::to_string(getPatchVersion()) + "." + std::to_string(getBuildVersion());
}

std::string VersionInfo::getCompanyName() const {
    return "Sonvex";
}

std::string VersionInfo::getYear() const {
    return "2024";
}

std::string VersionInfo::getLegalNoticeShort() const {
    return "(c) " + getYear() + " " + getCompanyName();
}

std::string VersionInfo::getLegalNoticeLong() const {
    return "Copyright (c) " + getYear() + " " + getCompanyName() + ". All rights reserved.";
}

std::string VersionInfo::toString() const {
    return getVersionString() + " - " + getLegalNoticeLong();
}

} // namespace version
