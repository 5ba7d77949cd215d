#pragma once

#include "core/data/StringOverloadBase.h"
#include "pcapplus/PacketHandlerSlot.h"

namespace pcapplus {

/// The side that frames are delivered to. receivePacket() runs on capture threads, everything else on the host's.
class PcapPacketReceiverBase : public StringOverloadBase {
public:
    /// Calls receivePacket() of this object, which has to outlive the handler's stay in the slot.
    PacketHandler getPacketHandler();

    /// Binds the receiver to the adapter of the given number, once; a second call is refused with false.
    bool bindToDevice(int deviceNumber);

    /// One captured frame; @p bytes is valid for the length of the call. May be called from several captures at a time.
    virtual void receivePacket(u_char *user, const pcap_pkthdr *header, const u_char *bytes) = 0;
    virtual std::string getReceiverName() const = 0;
    virtual void onDeviceBound(int deviceNumber) = 0;

private:
    bool boundToDevice = false;
};

} // namespace pcapplus
