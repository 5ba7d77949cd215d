#include "live/LibraryHost.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "support/loopback.h"

namespace live {

namespace {

constexpr unsigned bufferSize = 48000;

sonvex::IDeviceConfiguration &deviceFor(const talker::FrameFormat &format, sonvex::IBufferConfiguration &buffer) {
    if (format.sample.bytes == 2) { // as most hosts have it
        return sonvex::IDeviceConfiguration::createInstance("device", buffer, 2, format.channels,
                                                            format.samplesPerChannel);
    }
    return sonvex::IDeviceConfiguration::createInstance("device", buffer, sonvex::SampleFormat::Int32, format.channels,
                                                        format.samplesPerChannel);
}

/// A function stays bound to its source from run to run, so that it is the same for all runs.
LibraryHost::Waveform &current() {
    static LibraryHost::Waveform waveform;
    return waveform;
}

} // namespace

LibraryHost::LibraryHost(const std::string &adapter, const Traffic &traffic, unsigned clock, Waveform waveform) {
    sonvex::INetworkDeviceManager::createInstance().scanDevices(); // the library was loaded before there was a link
    ISonvex &library = ISonvex::createInstance();
    auto &buffer = sonvex::IBufferConfiguration::createInstance("buffer", bufferSize, clock);
    auto &device = deviceFor(traffic.format, buffer);
    sonvex::ihandles::INetworkReceiverHandle *capture = nullptr;
    for (unsigned stream = 0; stream < traffic.streams; ++stream) {
        capture = &library.addRemoteStreamReceiver(sonvex::IStreamConfiguration::createInstance(
            "stream", Traffic::mac(stream), support::networkDevice(adapter), device));
        streamFacts.push_back(&sonvex::IStreamFacts::createInstance(Traffic::mac(stream)));
    }
    adapterFacts = &sonvex::IAdapterFacts::createInstance(adapter);
    if (waveform) {
        current() = std::move(waveform);
        auto &config = sonvex::iprocess::IWaveformConfig::createInstance("waveform", clock);
        auto &processor =
            library.addProcessor(sonvex::IProcessConfiguration::createInstance("waveform", config, Traffic::mac(0), 0));
        library.getMeteringDataSource(processor).bindChannelCallback(
            [](sonvex::IChannelData &result) { current()(result.getVectorData().getY()); });
        processor.start();
    }
    time.emplace([capture] { capture->start(); });
}

LibraryHost::~LibraryHost() {
    ISonvex::destroy();
}

std::uint64_t LibraryHost::sum(std::uint64_t (sonvex::IStreamFacts::*value)() const) const {
    std::uint64_t total = 0;
    for (const sonvex::IStreamFacts *facts : streamFacts) {
        total += (facts->*value)();
    }
    return total;
}

} // namespace live
