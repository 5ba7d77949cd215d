#pragma once

#include "core/messages/BaseMessage.h"

namespace sonvex {

/// A message behind an interface of its own, whose IBaseMessage face gives the answers of BaseMessage.
template <class Interface>
class DerivedMessage : public BaseMessage, public Interface {
public:
    using BaseMessage::BaseMessage;

    std::string getName() const override { return BaseMessage::getName(); }
    std::string getMessageId() const override { return BaseMessage::getMessageId(); }
    std::string getMessageType() const override { return BaseMessage::getMessageType(); }
    std::string getMessageDetails() const override { return BaseMessage::getMessageDetails(); }
    std::string toString() const override { return BaseMessage::toString(); }
};

} // namespace sonvex
