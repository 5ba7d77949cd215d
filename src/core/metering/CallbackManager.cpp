#include "core/metering/CallbackManager.h"

#include <utility>

#include "core/data/ChannelData.h"
#include "core/logging/Log.h"

namespace manager {

template <class Data>
CallbackManager<Data>::CallbackManager(std::string name) : name(std::move(name)) {
    logging::debug("manager::CallbackManager<class sonvex::ChannelData>::CallbackManager", this->name,
                   " Manager initialized");
}

template <class Data>
CallbackManager<Data>::~CallbackManager() {
    logging::debug("manager::CallbackManager<class sonvex::ChannelData>::~CallbackManager", name, " Manager deleted!");
}

template <class Data>
bool CallbackManager<Data>::bindCallback(std::function<void(Data &)> callback, unsigned char number) {
    if (!isCallbackNumberValid(number)) {
        warnAboutNumber("manager::CallbackManager<class sonvex::ChannelData>::bindCallback");
        return false;
    }
    boundCallbacks.emplace(number, std::move(callback));
    return true;
}

template <class Data>
void CallbackManager<Data>::deliver(Data &data, unsigned char number) const {
    const auto bound = boundCallbacks.find(number);
    if (bound != boundCallbacks.end()) {
        bound->second(data);
        return;
    }
    logging::debug("manager::CallbackManager<class sonvex::ChannelData>::dummyCallback", name,
                   " Callback not bound!\n Delivered data: ", data);
}

template <class Data>
std::string CallbackManager<Data>::toString() const {
    std::string text = "Callback manager: " + name +
                       "\n\tAvailable callback range: " + std::to_string(firstCallbackNumber) + " to " +
                       std::to_string(lastCallbackNumber) + "\n\tList of bound callbacks: [";
    for (const auto &bound : boundCallbacks) {
        text += std::to_string(bound.first) + " ";
    }
    return text + "]";
}

template <class Data>
bool CallbackManager<Data>::isCallbackNumberValid(unsigned char number) const {
    const bool valid = number >= firstCallbackNumber && number <= lastCallbackNumber;
    if (!valid) {
        warnAboutNumber("manager::CallbackManager<class sonvex::ChannelData>::isCallbackNumberValid");
    }
    return valid;
}

template <class Data>
void CallbackManager<Data>::warnAboutNumber(const std::string &context) const {
    logging::warning(context + " [" + name + "]", "Your given callback number is INVALID! ",
                     "Available callback range is: ", firstCallbackNumber, " to ", lastCallbackNumber);
}

template class CallbackManager<sonvex::ChannelData>;

} // namespace manager
