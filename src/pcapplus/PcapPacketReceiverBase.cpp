#include "pcapplus/PcapPacketReceiverBase.h"

namespace pcapplus {

PacketHandler PcapPacketReceiverBase::getPacketHandler() {
    return [this](u_char *user, const pcap_pkthdr *header, const u_char *bytes) { receivePacket(user, header, bytes); };
}

bool PcapPacketReceiverBase::bindToDevice(int deviceNumber) {
    if (boundToDevice) {
        return false;
    }
    onDeviceBound(deviceNumber);
    boundToDevice = true;
    return true;
}

} // namespace pcapplus
