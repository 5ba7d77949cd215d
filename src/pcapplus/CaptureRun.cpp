#include "pcapplus/CaptureRun.h"

#include <utility>

#include <sys/time.h>

namespace pcapplus {

CaptureRun::CaptureRun(const std::string &name, pcap_t *handle, GatheredFrames gathered,
                       std::shared_ptr<facts::AdapterFacts> facts)
    : handle(handle) {
    timeval launch{};
    if (gathered == GatheredFrames::Skip) {
        gettimeofday(&launch, nullptr);
    }
    thread = std::thread(
        [this, name = name, launch, facts = std::move(facts)]() mutable { // with all memory that it needs to begin
            RunPcapEventLoop loop(std::move(name), this->handle, launch, *facts);
            failed = !loop.run();
        });
}

CaptureRun::~CaptureRun() {
    breakLoop();
    wait();
}

void CaptureRun::breakLoop() {
    if (!broken) {
        broken = true;
        pcap_breakloop(handle); // also before the loop has begun
    }
}

void CaptureRun::wait() {
    if (thread.joinable()) {
        thread.join();
    }
}

} // namespace pcapplus
