#include "engine/streaming/StreamingEngine.h"

#include <utility>

#include <sonvex/exceptions.h>

#include "core/configuration/StreamConfiguration.h"
#include "core/logging/Log.h"
#include "engine/streaming/NetworkReceiver.h"

namespace engine::streaming {

StreamingEngine::StreamingEngine(QObject *parent) : QObject(parent) {
    logging::debug("engine::streaming::StreamingEngine::StreamingEngine", "Initialized");
}

StreamingEngine::~StreamingEngine() {
    static constexpr char context[] = "engine::streaming::StreamingEngine::~StreamingEngine";
    for (auto &entry : networkReceivers) {
        entry.second.reset();
    }
    logging::debug(context, "Network receiver cleared!");
    logging::debug(context, "Cleanup completed!");
}

void StreamingEngine::addRemoteStreamReceiver(sonvex::StreamConfiguration &configuration) {
    const pcapplus::PcapDeviceInfo &device = *configuration.getNetworkDeviceInfo();
    if (networkReceivers.count(device.getSystemDeviceName()) != 0) {
        logging::debug("engine::streaming::StreamingEngine::addRemoteStreamReceiver",
                       "Network receiver for network device '", device.getSystemDeviceDescription(), "' (",
                       device.getSystemDeviceName(), ") already available, the device stream can be added");
    } else {
        initiateNetworkReceiver(configuration);
    }
    addNetworkStreamToNetworkReceiver(configuration);
}

void StreamingEngine::initiateNetworkReceiver(sonvex::StreamConfiguration &configuration) {
    static constexpr char context[] = "engine::streaming::StreamingEngine::initiateNetworkReceiver";
    const pcapplus::PcapDeviceInfo &device = *configuration.getNetworkDeviceInfo();
    auto receiver = std::make_unique<NetworkReceiver>(device, avtpSubtype, packetFilter, run,
                                                      facts.ofAdapter(device.getSystemDeviceName()));
    if (!receiver->isConfigured() || !receiver->isThreadRunning()) {
        receiver.reset();
        const std::string text = "Packet receiver cannot be initialized by configuration '" + configuration.getName() +
                                 "' for streaming device: " + configuration.getDeviceMacAddress() +
                                 "! Wrong configuration passed";
        logging::warning(context, text);
        logging::refuseWith(exceptions::InstanceNotCreateable(text), context,
                            "Cannot be registered on: ", device.getSystemDeviceDescription(), "' (",
                            device.getSystemDeviceName(), ")");
    }
    networkReceivers[device.getSystemDeviceName()] = std::move(receiver);
    logging::debug(context, "Network receiver initialized by configuration '", configuration.getName(),
                   "'' for streaming device :", configuration.getDeviceMacAddress());
    logging::debug(context, "Registered on network device: ", device.getSystemDeviceDescription(), "' (",
                   device.getSystemDeviceName(), ")");
}

void StreamingEngine::addNetworkStreamToNetworkReceiver(sonvex::StreamConfiguration &configuration) {
    static constexpr char context[] = "engine::streaming::StreamingEngine::addNetworkStreamToNetworkReceiver";
    const pcapplus::PcapDeviceInfo &device = *configuration.getNetworkDeviceInfo();
    const std::string mac = configuration.getDeviceMacAddress();
    if (streamRegistry.count(mac) != 0) {
        const std::string text = "Streaming device already exists";
        logging::refuseWith(exceptions::StreamingDeviceAlreadyExists(text, device.getSystemDeviceName(), mac), context,
                            text, ": ", mac, "' already registered to '", device.getSystemDeviceDescription(), "' (",
                            device.getSystemDeviceName(), "). No action will be performed!");
    }
    const std::string name = configuration.getName();
    const std::string uid = device.getSystemDeviceName();
    const std::string description = device.getSystemDeviceDescription();
    NetworkReceiver &receiver = *networkReceivers.at(uid);
    const auto entry = streamRegistry.emplace(mac, uid).first;
    QMetaObject::Connection relay;
    try {
        relay = connect(&receiver, &avb::AvtpPacketReceiver::message, this, &StreamingEngine::message);
        receiver.addStreamingDevice(mac, configuration.getDeviceConfiguration(), facts.ofStream(mac),
                                    configuration.getStreamId());
    } catch (...) {
        disconnect(relay);
        streamRegistry.erase(entry);
        throw;
    }
    logging::debug(context, "Network stream successfully added by configuration '", name,
                   "'' for streaming device :", mac);
    logging::debug(context, "Receiver is: ", description, "' (", uid, ")");
}

avb::AvbAudioBuffer *StreamingEngine::getAudioBuffer(const std::string &mac, unsigned int channelNumber) const {
    const auto stream = streamRegistry.find(mac);
    if (stream == streamRegistry.end()) {
        const std::string text = "The requested audio buffer for streaming device MAC '" + mac +
                                 "' is NOT available! The device stream is not received by the engine";
        logging::refuse<exceptions::ResourceNotAvailable>("engine::streaming::StreamingEngine::getAudioBuffer", text);
    }
    return networkReceivers.at(stream->second)->getAudioBuffer(mac, channelNumber);
}

NetworkReceiverHandle *StreamingEngine::getNetworkDeviceHandle(const std::string &uid) const {
    const auto receiver = networkReceivers.find(uid);
    if (receiver == networkReceivers.end()) {
        const std::string text = "The requested network receiver handle for network receiver UID '" + uid +
                                 "' is NOT available! No network receiver for the given ID available by this engine";
        logging::refuse<exceptions::ResourceNotAvailable>("engine::streaming::StreamingEngine::getNetworkDeviceHandle",
                                                          text);
    }
    return &receiver->second->getHandle();
}

void StreamingEngine::stop() {
    for (const auto &entry : networkReceivers) {
        if (entry.second->isRunning()) {
            entry.second->stop();
        }
    }
    logging::debug("engine::streaming::StreamingEngine::stop", "Network receivers stopped!");
}

void StreamingEngine::settle() {
    for (const auto &entry : networkReceivers) { // each may bring frames to any receiver
        entry.second->waitForCaptureEnd();
    }
    for (const auto &entry : networkReceivers) {
        entry.second->settle();
    }
}

void StreamingEngine::retire() {
    settle();
    for (const auto &entry : networkReceivers) {
        entry.second->retire();
    }
}

void StreamingEngine::begin(std::shared_ptr<const Run> newRun) {
    formerHandles.reserve(formerHandles.size() + networkReceivers.size());
    for (const auto &entry : networkReceivers) {
        formerHandles.push_back(entry.second->takeHandle());
    }
    streamRegistry.clear();
    networkReceivers.clear();
    run = std::move(newRun);
}

} // namespace engine::streaming
