#pragma once

#include <string>

#include <sonvex/export.h>

namespace sonvex::imessages {

/// A status message. Immutable, so that any thread may read it; shared between the library and the host.
class SONVEX_EXPORT IBaseMessage {
public:
    IBaseMessage();
    IBaseMessage(const IBaseMessage &);
    virtual ~IBaseMessage();
    IBaseMessage &operator=(const IBaseMessage &);

    /// The kind of message: "BaseMessage", "StatusMessage" or "ChannelAmountChanged". A host receives the last one
    /// only.
    virtual std::string getName() const = 0;
    /// What the message is about, for example a stream's MAC text.
    virtual std::string getMessageId() const = 0;
    /// "INFORMATION" or "WARNING".
    virtual std::string getMessageType() const = 0;
    /// Always empty.
    virtual std::string getMessageDetails() const = 0;
    virtual std::string toString() const = 0;
};

} // namespace sonvex::imessages
