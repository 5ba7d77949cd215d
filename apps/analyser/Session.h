#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "analyser/AnalyserOptions.h"

namespace sonvex {
class IChannelData;
class INetworkDeviceInfo;
class IVectorData;
namespace ihandles {
class INetworkReceiverHandle;
class IProcessorHandle;
} // namespace ihandles
namespace imessages {
class IBaseMessage;
} // namespace imessages
namespace iprocess {
class IProcessorConfigBase;
} // namespace iprocess
} // namespace sonvex

namespace analyser {

/// One processor on one channel.
struct Analysis {
    AnalysisOptions options;
    /// Differs from that of every other analysis.
    std::string name;
    std::uint64_t results = 0;
    /// Of the last result; of the start before the first one.
    std::chrono::steady_clock::time_point lastSign;
};

/// Valid as long as the call that hands it over.
struct Result {
    const Analysis &analysis;
    /// Counts the results of the analysis, from 0.
    std::uint64_t sequence;
    const sonvex::IVectorData &data;
};

/// One run of the library: all calls to it are here, on the main thread. Needs a running event loop.
class Session {
public:
    /// Finds the adapter. @throws common::Refusal if there is no adapter of this name
    explicit Session(const MonitorOptions &options);
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    void onResult(std::function<void(const Result &)> function) { resultReceiver = std::move(function); }
    void onMessage(std::function<void(const sonvex::imessages::IBaseMessage &)> function) {
        messageReceiver = std::move(function);
    }

    /// Opens the adapter and sets the analyses up. @throws common::Refusal if the adapter can't be opened
    void open();
    void start();
    /// Ends the library's work and hands over what was still on its way. A second call does nothing.
    void end();

    const std::vector<Analysis> &analyses() const { return all; }
    std::uint64_t messages() const { return messageAmount; }
    /// What the newest packets of a stream declare; nothing before its first packet, -1 for an unreadable amount.
    std::optional<int> declaredChannels(const std::string &stream) const;
    /// From start to end, or to now while running.
    double seconds() const;

private:
    using Clock = std::chrono::steady_clock;

    void addStream(const StreamOptions &stream);
    void addWaveform(const AnalysisOptions &waveform);
    void addSpectrum(const AnalysisOptions &spectrum);
    void addLevels(const AnalysisOptions &levels);
    void addAnalysis(sonvex::iprocess::IProcessorConfigBase &config, const AnalysisOptions &settings);
    void receiveResult(std::size_t index, sonvex::IChannelData &data);
    void receiveMessage(const std::shared_ptr<sonvex::imessages::IBaseMessage> &message);

    const MonitorOptions &options;
    std::function<void(const Result &)> resultReceiver;
    std::function<void(const sonvex::imessages::IBaseMessage &)> messageReceiver;
    sonvex::INetworkDeviceInfo &adapter;
    sonvex::ihandles::INetworkReceiverHandle *capture = nullptr; // one for all streams of the adapter
    std::vector<sonvex::ihandles::IProcessorHandle *> processors;
    std::vector<Analysis> all;
    std::map<std::string, int> declared;
    std::uint64_t messageAmount = 0;
    std::optional<Clock::time_point> startTime;
    std::optional<Clock::time_point> endTime;
    bool ended = false;
};

} // namespace analyser
