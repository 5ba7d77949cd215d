#include <gtest/gtest.h>

#include "core/configuration/BufferConfiguration.h"
#include "support/NoticeRecorder.h"

namespace {

TEST(BufferConfiguration, announcesItsSignalingAmountOnlyWhenItChanges) {
    using Lines = std::vector<std::string>;
    sonvex::BufferConfiguration buffer("buf", 4800);
    support::NoticeRecorder notices(buffer);
    const std::string off = "[buf]\n\tBuffer size: 4800\n\tBuffer clock signaling deactivated!";
    const Lines changed = {"SignalingSampleAmountChnaged"};
    EXPECT_FALSE(buffer.isClockSignalingActive());
    EXPECT_EQ(buffer.toString(), off);
    buffer.setClockSignalingSampleAmount(480);
    EXPECT_EQ(notices.take(), changed);
    EXPECT_TRUE(buffer.isClockSignalingActive());
    buffer.setClockSignalingSampleAmount(480);
    EXPECT_EQ(notices.take(), Lines{});
    buffer.setClockSignalingSampleAmount(0);
    EXPECT_EQ(notices.take(), changed);
    EXPECT_EQ(buffer.toString(), off);
}

} // namespace
