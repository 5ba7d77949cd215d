#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "discovery/Bytes.h"

struct pcap;

namespace discovery {

/// A network adapter that is open for AVTP and reservation frames, all that pass it. One thread at a time.
class Adapter {
public:
    /// @param time ns since 1970
    using Receiver = std::function<void(Bytes frame, std::size_t wireSize, std::int64_t time)>;

    /// @throws common::Refusal if there is no such adapter, or it can't be opened, or it has no Ethernet frames
    explicit Adapter(std::string name);
    ~Adapter();
    Adapter(const Adapter &) = delete;
    Adapter &operator=(const Adapter &) = delete;

    /// Waits so many milliseconds at most, and hands over frames that have arrived.
    /// @throws common::Refusal if the adapter is gone
    void receive(int milliseconds, const Receiver &receiver);
    /// Frames that the kernel had to drop so far.
    std::uint64_t drops() const;

private:
    void activate();
    void filter();

    const std::string name;
    const std::unique_ptr<pcap, void (*)(pcap *)> handle;
};

} // namespace discovery
