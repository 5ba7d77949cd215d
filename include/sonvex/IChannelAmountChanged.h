#pragma once

#include <sonvex/IBaseMessage.h>
#include <sonvex/export.h>

namespace sonvex::imessages {

/// The packets of a stream declare another amount of channels than before. The message ID is the stream's MAC text.
class SONVEX_EXPORT IChannelAmountChanged : public IBaseMessage {
public:
    IChannelAmountChanged();
    IChannelAmountChanged(const IChannelAmountChanged &);
    ~IChannelAmountChanged() override;
    IChannelAmountChanged &operator=(const IChannelAmountChanged &);

    /// What the device configuration says.
    virtual unsigned int getConfiguredChannelAmount() const = 0;
    /// -1 before the first packet, and after a packet that was too short to hold an amount.
    virtual int getChannelAmountBefore() const = 0;
    virtual int getChannelAmountAfter() const = 0;
};

} // namespace sonvex::imessages
