#pragma once

#include <string>

#include <sonvex/export.h>

namespace sonvex {

/// Version and legal texts of the library.
class SONVEX_EXPORT IVersionInfo {
public:
    IVersionInfo();
    IVersionInfo(const IVersionInfo &);
    virtual ~IVersionInfo();
    IVersionInfo &operator=(const IVersionInfo &);

    virtual int getMajorVersion() const = 0;
    virtual int getMinorVersion() const = 0;
    virtual int getPatchVersion() const = 0;
    virtual int getBuildVersion() const = 0;
    /// The four numbers, joined by dots.
    virtual std::string getVersionString() const = 0;
    virtual std::string getCompanyName() const = 0;
    virtual std::string getYear() const = 0;
    virtual std::string getLegalNoticeShort() const = 0;
    virtual std::string getLegalNoticeLong() const = 0;
    virtual std::string toString() const = 0;
};

} // namespace sonvex
