#pragma once

#include <sonvex/IBaseMessage.h>

namespace sonvex {

/// A message; immutable after construction, so any number of threads may share it.
class BaseMessage : public imessages::IBaseMessage {
public:
    /// @param id what the message is about, @param type one of MessageTexts.h, @param sender the emitting class
    BaseMessage(const std::string &id, const std::string &type, const std::string &sender);

    std::string getName() const override;
    std::string getMessageId() const override;
    std::string getMessageType() const override;
    std::string getMessageDetails() const override;
    std::string toString() const override;

protected:
    void setName(const std::string &newName);

private:
    std::string name;
    std::string id;
    std::string type;
    std::string sender;
};

} // namespace sonvex
