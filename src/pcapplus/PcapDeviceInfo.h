#pragma once

#include <sonvex/INetworkDeviceInfo.h>

#include "core/data/StringOverloadBase.h"

namespace pcapplus {

/// One network adapter; a plain value that holds copies of the capture library's texts.
class PcapDeviceInfo : public StringOverloadBase, public sonvex::INetworkDeviceInfo {
public:
    /// What getSystemDeviceDescription() gives for an adapter without a description.
    static constexpr char noDescription[] = "Not available";

    PcapDeviceInfo(int number, std::string name, std::string description);

    int getSystemDeviceNumber() const override;
    std::string getSystemDeviceName() const override;
    std::string getSystemDeviceDescription() const override;
    bool isValid() const override;
    bool hasNoDescription() const override;
    std::string toString() const override;

private:
    int number;
    std::string name;
    std::string description;
};

} // namespace pcapplus
