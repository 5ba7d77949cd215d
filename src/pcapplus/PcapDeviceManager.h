#pragma once

#include <vector>

#include <sonvex/INetworkDeviceManager.h>

#include "pcapplus/PcapDeviceInfo.h"

namespace pcapplus {

/// Lists the adapters that the capture library sees. No lock: all operations belong on the host's thread.
class PcapDeviceManager : public StringOverloadBase, public sonvex::INetworkDeviceManager {
public:
    /// Scans at once.
    PcapDeviceManager();

    bool scanDevices() override;
    unsigned int getDeviceCount() const override;
    PcapDeviceInfo &getDeviceInfo(unsigned int index) override;
    std::string toString() const override;

private:
    std::vector<PcapDeviceInfo> devices;
};

} // namespace pcapplus
