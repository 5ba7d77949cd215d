#include "core/messages/BaseMessage.h"

#include "core/messages/MessageTexts.h"

namespace sonvex {

BaseMessage::BaseMessage(const std::string &id, const std::string &type, const std::string &sender)
    : name(messagetexts::baseMessageName), id(id), type(type), sender(sender) {}

std::string BaseMessage::getName() const {
    return name;
}

std::string BaseMessage::getMessageId() const {
    return id;
}

std::string BaseMessage::getMessageType() const {
    return type;
}

std::string BaseMessage::getMessageDetails() const {
    return {};
}

std::string BaseMessage::toString() const {
    return getName() + "\n\tMessage ID: " + id + "\n\tMessage type: " + type + "\n\tMessage sender: " + sender;
}

void BaseMessage::setName(const std::string &newName) {
    name = newName;
}

} // namespace sonvex
