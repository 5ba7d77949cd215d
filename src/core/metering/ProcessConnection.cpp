#include "core/metering/ProcessConnection.h"

#include "core/logging/Log.h"

namespace process {

ProcessConnection::ProcessConnection(const std::string &name, QObject *parent) : QObject(parent), DataObjectBase(name) {
    logging::debug("process::ProcessConnection::ProcessConnection", getName(), "Object created");
}

void ProcessConnection::setCallbackMethod(const std::function<void(sonvex::ChannelData &)> &method) {
    callback = method;
    callbackInitialized = true;
    logging::debug("process::ProcessConnection::setCallbackMethod", getName(), "Callback initialized!");
}

void ProcessConnection::signalToCallbackConnector(sonvex::ChannelData channel) {
    if (!callbackInitialized) {
        logging::warning("process::ProcessConnection::signalToCallbackConnector", getName(),
                         "Callback not initialized! Please set a valid callback");
        return;
    }
    const auto target = callback; // it may remove its own processor, and this object with it
    target(channel);
}

} // namespace process
