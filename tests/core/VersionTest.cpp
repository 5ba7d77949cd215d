#include <gtest/gtest.h>

#include <sonvex/sonvex.h>

namespace {

TEST(Version, isTheSameForTheFileItsNumbersAndItsTexts) {
    const sonvex::IVersionInfo &info = ISonvex::getVersion();
    EXPECT_EQ(qo::sonvexLib::getVersion(), "1.6.0.3");
    EXPECT_EQ(info.getVersionString(), "1.6.0.3");
    EXPECT_EQ(info.getMajorVersion(), 1);
    EXPECT_EQ(info.getMinorVersion(), 6);
    EXPECT_EQ(info.getPatchVersion(), 0);
    EXPECT_EQ(info.getBuildVersion(), 3);
    EXPECT_EQ(info.getYear(), "2024");
    EXPECT_EQ(info.toString(), "1.6.0.3 - " + info.getLegalNoticeLong());
    for (const std::string &text : {info.getCompanyName(), info.getLegalNoticeShort(), info.getLegalNoticeLong()}) {
        EXPECT_FALSE(text.empty());
    }
}

TEST(Library, hasOneListOfAdapters) {
    EXPECT_EQ(&sonvex::INetworkDeviceManager::createInstance(), &sonvex::INetworkDeviceManager::createInstance());
}

} // namespace
