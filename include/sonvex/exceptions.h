#pragma once

#include <exception>
#include <string>

#include <sonvex/export.h>

/// What the library throws at the host. Each class is copyable, thrown by value, and its texts belong to the object.
namespace exceptions {

/// Base of the family: catch it, or std::exception, to catch all.
class SONVEX_EXPORT SonvexException : public std::exception {
public:
    explicit SonvexException(std::string message);
    SonvexException(const SonvexException &);
    ~SonvexException() override;
    SonvexException &operator=(const SonvexException &);

    const char *what() const noexcept override;

private:
    std::string message;
};

/// What was asked for does not exist.
class SONVEX_EXPORT ResourceNotAvailable : public SonvexException {
public:
    using SonvexException::SonvexException;
    ~ResourceNotAvailable() override;
};

/// A configuration is of another type than the one needed.
class SONVEX_EXPORT InstanceNotConvertable : public SonvexException {
public:
    using SonvexException::SonvexException;
    ~InstanceNotConvertable() override;
};

/// The configuration cannot be turned into what it describes.
class SONVEX_EXPORT InstanceNotCreateable : public SonvexException {
public:
    using SonvexException::SonvexException;
    ~InstanceNotCreateable() override;
};

/// There is such an instance already.
class SONVEX_EXPORT InstanceAlreadyExists : public SonvexException {
public:
    using SonvexException::SonvexException;
    ~InstanceAlreadyExists() override;
};

/// The channel has a processor of this type already.
class SONVEX_EXPORT ProcessorAlreadyExists : public InstanceAlreadyExists {
public:
    ProcessorAlreadyExists(std::string message, std::string processorUniqueId);
    ProcessorAlreadyExists(const ProcessorAlreadyExists &);
    ~ProcessorAlreadyExists() override;
    ProcessorAlreadyExists &operator=(const ProcessorAlreadyExists &);

    /// Valid as long as the exception.
    virtual const char *getProcessorUniqueId() const noexcept;

private:
    std::string processorUniqueId;
};

/// The device's stream is received already.
class SONVEX_EXPORT StreamingDeviceAlreadyExists : public InstanceAlreadyExists {
public:
    StreamingDeviceAlreadyExists(std::string message, std::string networkDeviceName, std::string deviceMacAddress);
    StreamingDeviceAlreadyExists(const StreamingDeviceAlreadyExists &);
    ~StreamingDeviceAlreadyExists() override;
    StreamingDeviceAlreadyExists &operator=(const StreamingDeviceAlreadyExists &);

    /// The system name of the adapter in the refused configuration. Valid as long as the exception.
    virtual const char *getNetworkDeviceName() const noexcept;
    /// The stream's MAC text. Valid as long as the exception.
    virtual const char *getStreamDeviceMacAddress() const noexcept;

private:
    std::string networkDeviceName;
    std::string deviceMacAddress;
};

} // namespace exceptions
