#pragma once

#include <sonvex/IVersionInfo.h>

#include "core/data/StringOverloadBase.h"

namespace version {

/// The version of the exported interface: it grows with every change that a built host would notice.
inline constexpr unsigned int interfaceVersion = 101;

/// Version and legal texts; every answer is a constant.
class VersionInfo : public StringOverloadBase, public sonvex::IVersionInfo {
public:
    int getMajorVersion() const override;
    int getMinorVersion() const override;
    int getPatchVersion() const override;
    int getBuildVersion() const override;
    std::string getVersionString() const override;
    std::string getCompanyName() const override;
    std::string getYear() const override;
    std::string getLegalNoticeShort() const override;
    std::string getLegalNoticeLong() const override;
    std::string toString() const override;
};

} // namespace version
