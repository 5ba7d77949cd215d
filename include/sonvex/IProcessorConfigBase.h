#pragma once

#include <string>

#include <sonvex/export.h>

namespace sonvex::iprocess {

/// What every processor configuration has.
class SONVEX_EXPORT IProcessorConfigBase {
public:
    IProcessorConfigBase();
    IProcessorConfigBase(const IProcessorConfigBase &);
    virtual ~IProcessorConfigBase();
    IProcessorConfigBase &operator=(const IProcessorConfigBase &);

    virtual std::string getProcessorType() const = 0;
    virtual std::string toString() const = 0;
};

} // namespace sonvex::iprocess
