#include "pcapplus/CaptureRun.h"

#include <sys/time.h>

namespace pcapplus {

CaptureRun::CaptureRun(const std::string &name, pcap_t *handle, GatheredFrames gathered) : handle(handle) {
    timeval launch{};
    if (gathered == GatheredFrames::Skip) {
        gettimeofday(&launch, nullptr);
    }
    thread = std::thread([this, name, launch] {
        RunPcapEventLoop loop(name, this->handle, launch);
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
