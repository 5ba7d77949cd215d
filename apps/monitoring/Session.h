#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "monitoring/AdapterLink.h"
#include "monitoring/Health.h"
#include "monitoring/Message.h"
#include "monitoring/Result.h"
#include "monitoring/SessionSettings.h"
#include "monitoring/Status.h"
#include "monitoring/Timeline.h"

namespace sonvex {
class IAdapterFacts;
class IChannelData;
class INetworkDeviceInfo;
class IStreamFacts;
namespace ihandles {
class INetworkReceiverHandle;
class IProcessorHandle;
} // namespace ihandles
namespace imessages {
class IBaseMessage;
} // namespace imessages
} // namespace sonvex

namespace monitoring {

/// One run of the library, and the only one who calls it: all on the main thread, whose event loop has to run.
class Session {
public:
    /// Finds the adapter. @throws common::Refusal if there is no adapter of this name
    explicit Session(SessionSettings settings);
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    void onResult(std::function<void(std::shared_ptr<const Result>)> function) { resultReceiver = std::move(function); }
    void onMessage(std::function<void(std::shared_ptr<const Message>)> function) {
        messageReceiver = std::move(function);
    }

    /// Opens the adapter and sets the analyses up. @throws common::Refusal if the adapter can't be opened
    void open();
    void start();
    /// Ends the library's work and hands over what was still on its way. A second call does nothing.
    void end();

    /// How things are, and since the call before: once a second does.
    Status examine();

private:
    using Clock = std::chrono::steady_clock;

    struct Stream {
        const StreamSettings *settings;
        const sonvex::IStreamFacts *facts;
        Timeline timeline;
    };
    struct Running {
        std::shared_ptr<const Analysis> analysis;
        sonvex::ihandles::IProcessorHandle *processor = nullptr;
        Stream *stream = nullptr;
        std::uint64_t results = 0;
        std::uint64_t resultsBefore = 0;     ///< at the last examination
        Clock::time_point lastSign;          ///< of the last result; of the start before the first one
        std::optional<std::uint64_t> goneAt; ///< the position since which the stream is without the channel
        std::uint64_t absence = 0;           ///< samples that the stream had without it
        std::uint64_t absenceEnd = 0;
    };

    void addStream(const StreamSettings &stream);
    void addAnalysis(std::shared_ptr<const Analysis> analysis);
    void receiveResult(std::size_t index, sonvex::IChannelData &data);
    void receiveMessage(const sonvex::imessages::IBaseMessage &message);
    void followChannels(const std::string &stream, int channels);
    double seconds() const;
    bool isOverdue(const Running &running) const;

    const SessionSettings settings;
    sonvex::INetworkDeviceInfo &adapter;
    AdapterLink link;
    Health health;
    std::function<void(std::shared_ptr<const Result>)> resultReceiver;
    std::function<void(std::shared_ptr<const Message>)> messageReceiver;
    sonvex::ihandles::INetworkReceiverHandle *capture = nullptr; ///< one for all streams of the adapter
    const sonvex::IAdapterFacts *adapterFacts = nullptr;
    std::map<std::string, Stream> streams; ///< by key
    std::vector<Running> running;
    std::uint64_t messages = 0;
    double examinedAt = 0.0; ///< seconds
    std::optional<Clock::time_point> startTime;
    std::optional<Clock::time_point> endTime;
    bool ended = false;
};

} // namespace monitoring
