#include "endurance/KernelDrops.h"

#include <atomic>

#include <pcap/pcap.h>

// The library closes its captures through this seam (the linker's --wrap), which asks each for its last word.

namespace {

std::atomic<std::uint64_t> drops{0};

} // namespace

extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
void __real_pcap_close(pcap_t *handle);

void __wrap_pcap_close(pcap_t *handle) {
    pcap_stat statistics{};
    if (pcap_stats(handle, &statistics) == 0) {
        drops += statistics.ps_drop;
    }
    __real_pcap_close(handle);
}
// NOLINTEND(bugprone-reserved-identifier)
}

namespace endurance {

std::uint64_t kernelDrops() {
    return drops;
}

} // namespace endurance
