#include <sonvex/exceptions.h>

#include <utility>

namespace exceptions {

SonvexException::SonvexException(std::string message) : message(std::move(message)) {}
SonvexException::SonvexException(const SonvexException &) = default;
SonvexException::~SonvexException() = default;
SonvexException &SonvexException::operator=(const SonvexException &) = default;

const char *SonvexException::what() const noexcept {
    return message.c_str();
}

ResourceNotAvailable::~ResourceNotAvailable() = default;
InstanceNotConvertable::~InstanceNotConvertable() = default;
InstanceNotCreateable::~InstanceNotCreateable() = default;
InstanceAlreadyExists::~InstanceAlreadyExists() = default;

ProcessorAlreadyExists::ProcessorAlreadyExists(std::string message, std::string processorUniqueId)
    : InstanceAlreadyExists(std::move(message)), processorUniqueId(std::move(processorUniqueId)) {}
ProcessorAlreadyExists::ProcessorAlreadyExists(const ProcessorAlreadyExists &) = default;
ProcessorAlreadyExists::~ProcessorAlreadyExists() = default;
ProcessorAlreadyExists &ProcessorAlreadyExists::operator=(const ProcessorAlreadyExists &) = default;

const char *ProcessorAlreadyExists::getProcessorUniqueId() const noexcept {
    return processorUniqueId.c_str();
}

StreamingDeviceAlreadyExists::StreamingDeviceAlreadyExists(std::string message, std::string networkDeviceName,
                                                           std::string deviceMacAddress)
    : InstanceAlreadyExists(std::move(message)), networkDeviceName(std::move(networkDeviceName)),
      deviceMacAddress(std::move(deviceMacAddress)) {}
StreamingDeviceAlreadyExists::StreamingDeviceAlreadyExists(const StreamingDeviceAlreadyExists &) = default;
StreamingDeviceAlreadyExists::~StreamingDeviceAlreadyExists() = default;
StreamingDeviceAlreadyExists &StreamingDeviceAlreadyExists::operator=(const StreamingDeviceAlreadyExists &) = default;

const char *StreamingDeviceAlreadyExists::getNetworkDeviceName() const noexcept {
    return networkDeviceName.c_str();
}

const char *StreamingDeviceAlreadyExists::getStreamDeviceMacAddress() const noexcept {
    return deviceMacAddress.c_str();
}

} // namespace exceptions
