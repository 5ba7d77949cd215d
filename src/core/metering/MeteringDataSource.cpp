#include "core/metering/MeteringDataSource.h"

#include <utility>

#include "core/logging/Log.h"

namespace sonvex {

MeteringDataSource::MeteringDataSource(std::string name)
    : DeliveryData(std::move(name)),
      callbackManager(std::make_unique<manager::CallbackManager<ChannelData>>(getName())) {
    logging::debug("sonvex::MeteringDataSource::MeteringDataSource", getName(), "Source created");
}

MeteringDataSource::~MeteringDataSource() {
    callbackManager.reset();
    logging::debug("sonvex::MeteringDataSource::~MeteringDataSource", getName(), "Source deleted!");
}

bool MeteringDataSource::bindChannelCallback(std::function<void(IChannelData &)> callback) {
    if (!callback) {
        logging::warning("sonvex::MeteringDataSource::bindChannelCallback", getName(),
                         "An empty function cannot be bound!");
        return false;
    }
    return callbackManager->bindCallback([callback = std::move(callback)](ChannelData &data) { callback(data); },
                                         channelCallback);
}

std::string MeteringDataSource::toString() const {
    return "MeteringDataSource: " + getName() +
           "\n\tAvailable channel callbacks: " + std::to_string(callbackManager->getLastCallbackNumber()) + "\n" +
           callbackManager->toString();
}

std::function<void(ChannelData &)> MeteringDataSource::getChannelCallback() {
    return [target = callbackManager.get()](ChannelData &data) { target->deliver(data, channelCallback); };
}

} // namespace sonvex
