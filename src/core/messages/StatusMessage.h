#pragma once

#include <sonvex/IStatusMessage.h>

#include "core/messages/DerivedMessage.h"

namespace sonvex {

/// A status text.
class StatusMessage : public DerivedMessage<imessages::IStatusMessage> {
public:
    StatusMessage(const std::string &id, const std::string &type, const std::string &sender, const std::string &text);

    std::string getMessage() const override;
    std::string toString() const override;

private:
    std::string text;
};

} // namespace sonvex
