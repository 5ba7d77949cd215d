#pragma once

#include <cstdint>
#include <string>

namespace live {

/// How much of the machine others use, from the construction on.
class OthersLoad {
public:
    OthersLoad();

    /// In cores: what no thread of this process has used, the hypervisor's share included.
    double cores() const;

private:
    static double busySeconds();
    static double ownSeconds();

    double begin;
    double busyBefore;
    double ownBefore;
};

/// "N cores, load average ..."
std::string describeMachine();

/// What got lost between a sender and the captures of an adapter.
struct DropsOnTheWay {
    std::uint64_t adapters; ///< dropped when received, and when sent at the far end
    std::uint64_t backlog;  ///< of the whole machine: no room in a core's queue of received frames

    static DropsOnTheWay sum(const std::string &adapter, const std::string &farEnd);
};

} // namespace live
