#pragma once

#include <functional>

#include <pcap/pcap.h>
#include <pthread.h>

namespace pcapplus {

using PacketHandler = std::function<void(u_char *, const pcap_pkthdr *, const u_char *)>;

/// Stands in for a receiver: warns once per frame.
void dummyPacketHandler(u_char *user, const pcap_pkthdr *header, const u_char *bytes);

/// What pcap_loop calls: hands the frame to the process-wide slot.
void forwardCapturedPacket(u_char *user, const pcap_pkthdr *header, const u_char *bytes);

/**
 * The process's one target of captured frames: the receiver that was set last gets the frames of every capture.
 *
 * Threads: any number of captures forward at the same time without waiting for each other. set() waits until no frame
 * is in the earlier handler any more, so that handler's object may be destroyed afterwards; it goes before further
 * frames, so it cannot starve. A handler must not call set(). What is logged in a handler goes out behind it, so that
 * set() never waits for the host's log handler.
 */
class PacketHandlerSlot {
public:
    static PacketHandlerSlot &instance();

    void set(PacketHandler newHandler);
    void forward(u_char *user, const pcap_pkthdr *header, const u_char *bytes);

    PacketHandlerSlot(const PacketHandlerSlot &) = delete;
    PacketHandlerSlot &operator=(const PacketHandlerSlot &) = delete;

private:
    PacketHandlerSlot();
    ~PacketHandlerSlot() = default;

    pthread_rwlock_t lock = PTHREAD_RWLOCK_WRITER_NONRECURSIVE_INITIALIZER_NP;
    PacketHandler handler; ///< guarded by lock; never empty
};

} // namespace pcapplus
