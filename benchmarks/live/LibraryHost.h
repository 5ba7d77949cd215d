#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <sonvex/sonvex.h>

#include "live/ThreadTime.h"
#include "live/Traffic.h"

namespace live {

/// A measurement application that receives all streams of some traffic through the exported interface. One run of the
/// library per object.
class LibraryHost {
public:
    using Waveform = std::function<void(const std::vector<double> &)>;

    /// The channels' buffers signal each @p clock samples.
    /// @param waveform if there is one, it gets so many samples of the first channel of the first stream each time
    LibraryHost(const std::string &adapter, const Traffic &traffic, unsigned clock, Waveform waveform = {});
    ~LibraryHost();
    LibraryHost(const LibraryHost &) = delete;
    LibraryHost &operator=(const LibraryHost &) = delete;

    /// Of the capture's thread.
    const ThreadTime &threadTime() const { return *time; }
    std::uint64_t captured() const { return adapterFacts->getFramesSeen(); }
    std::uint64_t kernelDrops() const { return adapterFacts->getKernelDrops(); }
    std::uint64_t taken() const { return sum(&sonvex::IStreamFacts::getFramesTaken); }
    /// By the sequence of each stream.
    std::uint64_t lost() const { return sum(&sonvex::IStreamFacts::getFramesLost); }

private:
    std::uint64_t sum(std::uint64_t (sonvex::IStreamFacts::*value)() const) const;

    std::vector<const sonvex::IStreamFacts *> streamFacts;
    const sonvex::IAdapterFacts *adapterFacts = nullptr;
    std::optional<ThreadTime> time;
};

} // namespace live
