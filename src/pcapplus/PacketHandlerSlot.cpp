#include "pcapplus/PacketHandlerSlot.h"

#include <memory>
#include <utility>

#include "core/logging/HeldLines.h"
#include "core/logging/Log.h"
#include "pcapplus/CapturingAdapter.h"

namespace pcapplus {

void dummyPacketHandler(u_char * /*user*/, const pcap_pkthdr * /*header*/, const u_char * /*bytes*/) {
    CapturingAdapter::countFrameOfNoStream();
    logging::warning("dummyPacketHandler", "Pcap++ callback not bound! Please call method 'registerCallback'",
                     "to bind a valid receiver!");
}

void forwardCapturedPacket(u_char *user, const pcap_pkthdr *header, const u_char *bytes) {
    PacketHandlerSlot::instance().forward(user, header, bytes);
}

PacketHandlerSlot &PacketHandlerSlot::instance() {
    static PacketHandlerSlot slot;
    return slot;
}

PacketHandlerSlot::PacketHandlerSlot() : handler(dummyPacketHandler) {}

void PacketHandlerSlot::set(PacketHandler newHandler) {
    pthread_rwlock_wrlock(&lock);
    handler.swap(newHandler);
    pthread_rwlock_unlock(&lock);
}

void PacketHandlerSlot::forward(u_char *user, const pcap_pkthdr *header, const u_char *bytes) {
    const logging::HeldLines lines;
    pthread_rwlock_rdlock(&lock);
    const std::unique_ptr<pthread_rwlock_t, int (*)(pthread_rwlock_t *)> reading(&lock, pthread_rwlock_unlock);
    handler(user, header, bytes);
}

} // namespace pcapplus
