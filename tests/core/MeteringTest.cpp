#include <memory>

#include <gtest/gtest.h>

#include "core/metering/MeteringDataSource.h"
#include "core/metering/ProcessConnection.h"
#include "support/LogRecorder.h"

namespace {

using Lines = std::vector<std::string>;
using sonvex::ChannelData;
using sonvex::MeteringDataSource;
using sonvex::VectorData;

const std::string managerScope = "manager::CallbackManager<class sonvex::ChannelData>::";

/// A function of the host that notes the names of what it gets.
auto noteNames(Lines &names) {
    return [&names](const auto &data) { names.push_back(data.getName()); };
}

TEST(MeteringDataSource, createsAndDeletesItsManagerWithinItsOwnLife) {
    const support::LogRecorder log;
    { const MeteringDataSource source("src"); }
    EXPECT_EQ(log.lines(), (Lines{"D " + managerScope + "CallbackManager \"src\"  Manager initialized",
                                  "D sonvex::MeteringDataSource::MeteringDataSource \"src\" Source created",
                                  "D " + managerScope + "~CallbackManager \"src\"  Manager deleted!",
                                  "D sonvex::MeteringDataSource::~MeteringDataSource \"src\" Source deleted!"}));
}

TEST(MeteringDataSource, logsAndLosesResultsUntilAFunctionIsBound) {
    MeteringDataSource source("src");
    const auto delivery = source.getChannelCallback();
    ChannelData early("early", VectorData({1}, {2}));
    ChannelData late("late", VectorData());
    const support::LogRecorder log;
    delivery(early);
    EXPECT_EQ(log.lines(), Lines{"D " + managerScope +
                                 "dummyCallback \"src\"  Callback not bound!\n Delivered data:  "
                                 "[early]\n[Vector (x,y)]\n\tx: 1\n\ty: 2"});
    Lines names;
    source.bindChannelCallback(noteNames(names));
    delivery(late);
    EXPECT_EQ(names, Lines{"late"});
}

TEST(MeteringDataSource, refusesAnEmptyFunctionAndPrintsWhatIsBound) {
    MeteringDataSource source("src");
    const std::string text = "MeteringDataSource: src\n\tAvailable channel callbacks: 1\nCallback manager: src\n"
                             "\tAvailable callback range: 1 to 1\n\tList of bound callbacks: ";
    EXPECT_FALSE(source.bindChannelCallback({}));
    EXPECT_EQ(source.toString(), text + "[]");
    EXPECT_TRUE(source.bindChannelCallback([](sonvex::IChannelData & /*data*/) {}));
    EXPECT_EQ(source.toString(), text + "[1 ]");
}

TEST(CallbackManager, refusesNumbersOutsideItsRangeWithTwoWarnings) {
    manager::CallbackManager<ChannelData> callbacks("man");
    const std::string text = " [man]\" Your given callback number is INVALID!  Available callback range is:  1  to  1";
    for (const unsigned char number : std::initializer_list<unsigned char>{0, 2, 255}) {
        const support::LogRecorder log;
        EXPECT_FALSE(callbacks.bindCallback([](ChannelData & /*data*/) {}, number));
        EXPECT_EQ(log.lines(), (Lines{"W \"" + managerScope + "isCallbackNumberValid" + text,
                                      "W \"" + managerScope + "bindCallback" + text}));
    }
}

TEST(ProcessConnection, dropsResultsWithAWarningUntilItHasItsFunction) {
    const std::string context = "process::ProcessConnection::";
    const support::LogRecorder log;
    process::ProcessConnection connection("con", nullptr);
    connection.signalToCallbackConnector(ChannelData());
    Lines names;
    connection.setCallbackMethod(noteNames(names));
    connection.signalToCallbackConnector(ChannelData("kept", VectorData()));
    EXPECT_EQ(names, Lines{"kept"});
    EXPECT_EQ(log.lines(), (Lines{"D " + context + "ProcessConnection \"con\" Object created",
                                  "W " + context +
                                      "signalToCallbackConnector \"con\" Callback not initialized! "
                                      "Please set a valid callback",
                                  "D " + context + "setCallbackMethod \"con\" Callback initialized!"}));
}

TEST(ProcessConnection, mayGoFromWithinItsFunction) {
    auto connection = std::make_unique<process::ProcessConnection>("con", nullptr);
    Lines names;
    connection->setCallbackMethod([&, kept = std::string(100, 'k')](const ChannelData & /*data*/) {
        connection.reset();
        names.push_back(kept);
    });
    connection->signalToCallbackConnector(ChannelData());
    EXPECT_EQ(names, Lines{std::string(100, 'k')});
}

} // namespace
