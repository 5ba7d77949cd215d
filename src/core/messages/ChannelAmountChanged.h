#pragma once

#include <sonvex/IChannelAmountChanged.h>

#include "core/messages/DerivedMessage.h"

namespace sonvex {

/// The packets of a stream declare another amount of channels than before; -1 stands for an unreadable amount.
class ChannelAmountChanged : public DerivedMessage<imessages::IChannelAmountChanged> {
public:
    ChannelAmountChanged(const std::string &id, const std::string &type, const std::string &sender,
                         unsigned int configured, int before, int after);

    unsigned int getConfiguredChannelAmount() const override;
    int getChannelAmountBefore() const override;
    int getChannelAmountAfter() const override;
    std::string toString() const override;

private:
    unsigned int configured;
    int before;
    int after;
};

} // namespace sonvex
