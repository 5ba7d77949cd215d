#include <gtest/gtest.h>

#include "core/messages/ChannelAmountChanged.h"
#include "core/messages/StatusMessage.h"

namespace {

using sonvex::BaseMessage;
using sonvex::ChannelAmountChanged;
using sonvex::StatusMessage;
using sonvex::imessages::IBaseMessage;

void expectAnswers(const IBaseMessage &message, const std::string &name, const std::string &furtherLines) {
    EXPECT_EQ(message.getName(), name);
    EXPECT_EQ(message.getMessageId(), "id");
    EXPECT_EQ(message.getMessageType(), "WARNING");
    EXPECT_EQ(message.getMessageDetails(), "");
    EXPECT_EQ(message.toString(),
              name + "\n\tMessage ID: id\n\tMessage type: WARNING\n\tMessage sender: sender" + furtherLines);
}

TEST(Messages, answerWithTheirOwnNameAndDumpThroughEveryFace) {
    expectAnswers(BaseMessage("id", "WARNING", "sender"), "BaseMessage", "");
    const StatusMessage status("id", "WARNING", "sender", "a text");
    const ChannelAmountChanged change("id", "WARNING", "sender", 8, -1, 2);
    const std::string changeLines = "\n\tChannel amount before the change: -1\n\tChannel amount after the change: 2";
    expectAnswers(static_cast<const BaseMessage &>(status), "StatusMessage", "\n\tMessage: a text");
    expectAnswers(static_cast<const sonvex::imessages::IStatusMessage &>(status), "StatusMessage",
                  "\n\tMessage: a text");
    expectAnswers(static_cast<const BaseMessage &>(change), "ChannelAmountChanged", changeLines);
    expectAnswers(static_cast<const sonvex::imessages::IChannelAmountChanged &>(change), "ChannelAmountChanged",
                  changeLines);
}

} // namespace
