#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>

#include <sonvex/IAdapterFacts.h>

#include "core/facts/Fact.h"

namespace facts {

/**
 * Frames are counted on the thread of the adapter's capture, which also says when it fails; everything else is written
 * and read on the host's thread, between captures or beside one. The mutex guards the texts, and no frame takes it.
 */
class AdapterFacts : public sonvex::IAdapterFacts {
public:
    /// Everything as before the first capture.
    void begin();

    void frameSeen() { framesSeen.add(1); }
    void frameOfNoStream() { framesOfNoStream.add(1); }
    /// Empty if all is well.
    void startFailed(const std::string &error);
    void captureStarted();
    void captureStopped();
    /// On the capture's thread.
    void captureFailed(const char *reason);
    /// @param counter gives what the kernel has dropped in the capture that goes on, in 32 bits that go round; an empty
    /// function ends the counting. The counter is called from here and from getKernelDrops().
    void countDropsWith(std::function<std::uint32_t()> counter);

    bool isCapturing() const override;
    std::string getEndReason() const override;
    std::string getStartError() const override;
    std::uint64_t getKernelDrops() const override;
    std::uint64_t getFramesSeen() const override;
    std::uint64_t getFramesOfNoStream() const override;

private:
    void countDrops() const;

    Fact<bool> capturing{false};
    Fact<std::uint64_t> framesSeen;
    Fact<std::uint64_t> framesOfNoStream;

    mutable std::mutex textMutex;
    std::string endReason;
    std::string startError;

    std::function<std::uint32_t()> dropCounter;
    mutable std::uint32_t latestDrops = 0; ///< what the counter gave last
    mutable std::uint64_t kernelDrops = 0;
};

} // namespace facts
