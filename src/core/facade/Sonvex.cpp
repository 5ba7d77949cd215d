#include "core/facade/Sonvex.h"

#include <sonvex/exceptions.h>

#include "core/configuration/ProcessConfiguration.h"
#include "core/configuration/StreamConfiguration.h"
#include "core/logging/Log.h"
#include "core/metering/MeteringDataSource.h"
#include "core/metering/ProcessConnection.h"
#include "engine/processing/ProcessorHandle.h"
#include "engine/streaming/NetworkReceiverHandle.h"

Sonvex::Sonvex() : applicationEnd([this] { pauseRun(); }) {
    connect(&streamingEngine, &engine::streaming::StreamingEngine::message, this, &Sonvex::forwardMessage);
    beginRun();
}

Sonvex::~Sonvex() {
    static constexpr char context[] = "Sonvex::~Sonvex";
    logging::debug(context, "Destructor called!");
    for (auto &entry : meteringDataSources) {
        entry.second.reset();
    }
    logging::debug(context, "Metering data sources cleared!");
}

sonvex::ihandles::INetworkReceiverHandle &Sonvex::addRemoteStreamReceiver(sonvex::IStreamConfiguration &configuration) {
    auto &stream = dynamic_cast<sonvex::StreamConfiguration &>(configuration);
    const std::string uid = stream.getNetworkDeviceInfo()->getSystemDeviceName();
    beginRun();
    streamingEngine.addRemoteStreamReceiver(stream);
    return *streamingEngine.getNetworkDeviceHandle(uid);
}

sonvex::ihandles::IProcessorHandle &Sonvex::addProcessor(sonvex::IProcessConfiguration &configuration) {
    if (dynamic_cast<sonvex::ProcessConfiguration *>(&configuration) != nullptr) { // or it is refused below
        beginRun();
    }
    avb::AvbAudioBuffer &audioBuffer =
        *streamingEngine.getAudioBuffer(configuration.getDeviceMacAddress(), configuration.getChannelNumber());
    auto &process = dynamic_cast<sonvex::ProcessConfiguration &>(configuration);
    engine::processing::ProcessorHandle &handle = *processorEngine.addProcessor(process, audioBuffer);
    try {
        // A processor that comes back under its unique ID finds its source, and with it the host's binding.
        auto &source = meteringDataSources[handle.getUniqueId()];
        if (!source) {
            source = std::make_unique<sonvex::MeteringDataSource>(process.getName());
        }
        processorEngine.getProcessConnection(handle)->setCallbackMethod(source->getChannelCallback());
    } catch (...) {
        processorEngine.removeProcessor(handle);
        throw;
    }
    return handle;
}

void Sonvex::removeProcessor(sonvex::ihandles::IProcessorHandle &handle) {
    processorEngine.removeProcessor(dynamic_cast<engine::processing::ProcessorHandle &>(handle));
}

sonvex::IMeteringDataSource &Sonvex::getMeteringDataSource(sonvex::ihandles::IProcessorHandle &handle) {
    const std::string uniqueId = handle.getUniqueId();
    const auto source = meteringDataSources.find(uniqueId);
    if (source == meteringDataSources.end()) {
        const std::string text =
            "The requested MeteringDataSource is not available for processor handle unique ID: " + uniqueId;
        logging::refuse<exceptions::ResourceNotAvailable>("Sonvex::getMeteringDataSource", text);
    }
    return *source->second;
}

void Sonvex::setMessageReceiver(const std::function<void(std::shared_ptr<sonvex::imessages::IBaseMessage>)> &receiver) {
    messageReceiver = receiver;
    logging::debug("Sonvex::setMessageReceiver", "Successfully registered the main application message receiver");
}

void Sonvex::beginRun() {
    applicationEnd.await(); // an addition, too, sends events to threads
    if (run && !run->isOver()) {
        return;
    }
    const auto newRun = std::make_shared<engine::Run>([this] { applicationEnd.await(); });
    processorEngine.begin(newRun);
    streamingEngine.begin(newRun);
    run = newRun;
}

bool Sonvex::endRun() {
    if (run->isOver()) {
        return true;
    }
    if (!processorEngine.isOwnThread()) {
        logging::warning("Sonvex::endRun", "Only the thread that added the processors can end the run!");
        return false;
    }
    stopRun();
    streamingEngine.retire();
    processorEngine.retire();
    run->end();
    return true;
}

void Sonvex::stopRun() {
    processorEngine.stop();
    streamingEngine.stop();
}

void Sonvex::pauseRun() {
    if (!run->isOver() && processorEngine.isOwnThread()) {
        stopRun();
        streamingEngine.settle();
        processorEngine.settle();
        // Comes with the next application object's events: what a host sets then goes to threads again.
        QMetaObject::invokeMethod(
            this, [this] { applicationEnd.await(); }, Qt::QueuedConnection);
    }
}

void Sonvex::forwardMessage(std::shared_ptr<sonvex::BaseMessage> message) {
    const auto receiver = messageReceiver; // it may replace itself from within
    if (receiver) {
        receiver(message);
    }
}
