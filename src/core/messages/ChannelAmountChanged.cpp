#include "core/messages/ChannelAmountChanged.h"

#include "core/messages/MessageTexts.h"

namespace sonvex {

ChannelAmountChanged::ChannelAmountChanged(const std::string &id, const std::string &type, const std::string &sender,
                                           unsigned int configured, int before, int after)
    : DerivedMessage(id, type, sender), configured(configured), before(before), after(after) {
    setName(messagetexts::channelAmountChangedName);
}

unsigned int ChannelAmountChanged::getConfiguredChannelAmount() const {
    return configured;
}

int ChannelAmountChanged::getChannelAmountBefore() const {
    return before;
}

int ChannelAmountChanged::getChannelAmountAfter() const {
    return after;
}

std::string ChannelAmountChanged::toString() const {
    return BaseMessage::toString() + "\n\tChannel amount before the change: " + std::to_string(before) +
           "\n\tChannel amount after the change: " + std::to_string(after);
}

} // namespace sonvex
