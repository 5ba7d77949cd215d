#include "core/version/VersionInfo.h"

namespace version {

int VersionInfo::getMajorVersion() const {
    return 1;
}

int VersionInfo::getMinorVersion() const {
    return 6;
}

int VersionInfo::getPatchVersion() const {
    return 0;
}

int VersionInfo::getBuildVersion() const {
    return 3;
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
