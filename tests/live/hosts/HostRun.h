#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <sonvex/sonvex.h>

#include "support/loopback.h"

namespace hosts {

/// A run as a measurement application sets it up: a stream on the loopback adapter, on it one analysis of each kind and
/// both clocks, all started. One at a time. A function stays bound to its source for ever, so results go to the latest.
struct HostRun {
    static constexpr char mac[] = "020000000001";

    HostRun()
        : buffer(sonvex::IBufferConfiguration::createInstance("buffer", 4800, 48)),
          device(sonvex::IDeviceConfiguration::createInstance("device", buffer, 2, 2, 6)),
          capture(facade.addRemoteStreamReceiver(
              sonvex::IStreamConfiguration::createInstance("stream", mac, support::loopback(), device))),
          spectrum(sonvex::iprocess::ISpectrumConfig::createInstance("spectrum", 0)) {
        using namespace sonvex::iprocess;
        latest = this;
        add("external", IWaveformConfig::createInstance("external", 48), 0);
        add("internal", IWaveformConfig::createInstance("internal", 48, 1), 1);
        spectrum.setFftOrder(6);
        spectrum.setMovingAverageActive(true);
        add("spectrum", spectrum, 0);
        add("levels", ISoundLevelValueConfig::createInstance("levels", 288), 0);
        for (auto *handle : processors) {
            handle->start();
        }
        capture.start();
    }

    void add(const std::string &name, sonvex::iprocess::IProcessorConfigBase &config, unsigned char channel) {
        processors.push_back(
            &facade.addProcessor(sonvex::IProcessConfiguration::createInstance(name, config, mac, channel)));
        facade.getMeteringDataSource(*processors.back())
            .bindChannelCallback([index = results.size()](sonvex::IChannelData &) {
                if (latest != nullptr) {
                    latest->count(index);
                }
            });
        results.push_back(0);
    }

    void count(std::size_t index) {
        ++results[index];
        if (isComplete() && onComplete) {
            std::exchange(onComplete, {})();
        }
    }

    /// Whether each analysis has delivered.
    bool isComplete() const {
        for (const int amount : results) {
            if (amount < 3) {
                return false;
            }
        }
        return true;
    }

    void removeAll() {
        for (auto *handle : processors) {
            facade.removeProcessor(*handle);
        }
    }

    ~HostRun() { latest = latest == this ? nullptr : latest; }
    HostRun(const HostRun &) = delete;
    HostRun &operator=(const HostRun &) = delete;

    static inline HostRun *latest = nullptr;

    ISonvex &facade = ISonvex::createInstance();
    sonvex::IBufferConfiguration &buffer;
    sonvex::IDeviceConfiguration &device;
    sonvex::ihandles::INetworkReceiverHandle &capture;
    sonvex::iprocess::ISpectrumConfig &spectrum;
    std::vector<sonvex::ihandles::IProcessorHandle *> processors;
    std::vector<int> results;
    std::function<void()> onComplete; ///< called once, from within a result's callback
};

} // namespace hosts
