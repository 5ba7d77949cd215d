#include <memory>

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

/// A derived message has the answers in both of its faces.
template <class Face, class Message>
void expectAnswersOnBothFaces(const Message &message, const std::string &name, const std::string &furtherLines) {
    expectAnswers(static_cast<const BaseMessage &>(message), name, furtherLines);
    expectAnswers(static_cast<const Face &>(message), name, furtherLines);
}

TEST(Messages, answerWithTheirOwnNameAndDumpThroughEveryFace) {
    expectAnswers(BaseMessage("id", "WARNING", "sender"), "BaseMessage", "");
    expectAnswersOnBothFaces<sonvex::imessages::IStatusMessage>(StatusMessage("id", "WARNING", "sender", "a text"),
                                                                "StatusMessage", "\n\tMessage: a text");
    expectAnswersOnBothFaces<sonvex::imessages::IChannelAmountChanged>(
        ChannelAmountChanged("id", "WARNING", "sender", 8, -1, 2), "ChannelAmountChanged",
        "\n\tChannel amount before the change: -1\n\tChannel amount after the change: 2");
}

TEST(ChannelAmountChanged, carriesTheThreeAmountsToAHostThatHoldsOnlyTheInterface) {
    const std::shared_ptr<BaseMessage> sent = std::make_shared<ChannelAmountChanged>("id", "INFORMATION", "s", 8, 2, 4);
    const std::shared_ptr<IBaseMessage> received = sent;
    const auto change = std::dynamic_pointer_cast<sonvex::imessages::IChannelAmountChanged>(received);
    ASSERT_TRUE(change);
    EXPECT_EQ(change->getConfiguredChannelAmount(), 8U);
    EXPECT_EQ(change->getChannelAmountBefore(), 2);
    EXPECT_EQ(change->getChannelAmountAfter(), 4);
}

} // namespace
