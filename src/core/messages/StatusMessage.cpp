#include "core/messages/StatusMessage.h"

#include "core/messages/MessageTexts.h"

namespace sonvex {

StatusMessage::StatusMessage(const std::string &id, const std::string &type, const std::string &sender,
                             const std::string &text)
    : DerivedMessage(id, type, sender), text(text) {
    setName(messagetexts::statusMessageName);
}

std::string StatusMessage::getMessage() const {
    return text;
}

std::string StatusMessage::toString() const {
    return BaseMessage::toString() + "\n\tMessage: " + text;
}

} // namespace sonvex
