#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <QObject>

#include "core/facts/ReceptionFacts.h"
#include "core/messages/BaseMessage.h"
#include "engine/Run.h"

namespace avb {
class AvbAudioBuffer;
} // namespace avb
namespace sonvex {
class StreamConfiguration;
} // namespace sonvex

namespace engine::streaming {

class NetworkReceiver;
class NetworkReceiverHandle;

/**
 * The register of streams: one receiver per adapter, each with any number of streams.
 * All operations belong on the host's thread; the maps have no lock. message is emitted there, too.
 */
class StreamingEngine : public QObject {
    Q_OBJECT

public:
    explicit StreamingEngine(QObject *parent = nullptr);
    /// Ends all captures and receivers and waits for their threads.
    ~StreamingEngine() override;

    /// Adds a stream, with a receiver if it is the first on its adapter. @throws what the two below throw
    void addRemoteStreamReceiver(sonvex::StreamConfiguration &configuration);
    /// @throws exceptions::InstanceNotCreateable if the adapter cannot be opened or the system gives no thread
    void initiateNetworkReceiver(sonvex::StreamConfiguration &configuration);
    /// @throws exceptions::StreamingDeviceAlreadyExists if the MAC is registered, on whatever adapter
    /// @throws exceptions::InstanceNotCreateable if the device has no channels, or more than there is memory for
    void addNetworkStreamToNetworkReceiver(sonvex::StreamConfiguration &configuration);

    /// Owned by the stream's receiver. @throws exceptions::ResourceNotAvailable
    avb::AvbAudioBuffer *getAudioBuffer(const std::string &mac, unsigned int channelNumber) const;
    /// @param uid the adapter's system name. @throws exceptions::ResourceNotAvailable
    NetworkReceiverHandle *getNetworkDeviceHandle(const std::string &uid) const;

    /// They outlive runs. Read on the host's thread.
    const facts::ReceptionFacts &getFacts() const { return facts; }

    /// Breaks all captures; does not wait for their ends.
    void stop();
    /// Returns once no capture goes on and nothing is queued here. All have to be stopped before.
    void settle();
    /// Follows the end of the run: returns once nothing here reads a configuration any more.
    void retire();
    /// Drops what the last run has left, but for the handles, which a host may hold.
    void begin(std::shared_ptr<const Run> newRun);

Q_SIGNALS:
    void message(std::shared_ptr<sonvex::BaseMessage> message);

private:
    const std::string packetFilter = "ether proto 0x22f0";
    const std::uint8_t avtpSubtype = 2; ///< AVTP Audio Format
    std::shared_ptr<const Run> run = std::make_shared<const Run>();
    facts::ReceptionFacts facts;
    std::vector<std::unique_ptr<NetworkReceiverHandle>> formerHandles;        ///< of runs that are over
    std::map<std::string, std::unique_ptr<NetworkReceiver>> networkReceivers; ///< by UID
    std::map<std::string, std::string> streamRegistry;                        ///< MAC text to UID
};

} // namespace engine::streaming
