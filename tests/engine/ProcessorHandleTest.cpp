#include "engine/processing/ProcessorHandle.h"

#include <gtest/gtest.h>
#include <sonvex/exceptions.h>

#include "engine/processing/ProcessorHandleManager.h"
#include "engine/processing/ProcessorSocket.h"
#include "process/Processor.h"
#include "support/LogRecorder.h"
#include "support/refusalOf.h"

namespace {

using engine::processing::ProcessorHandle;
using engine::processing::ProcessorHandleManager;
using engine::processing::ProcessorSocket;
using Lines = std::vector<std::string>;

class IdleProcessor : public process::Processor {
public:
    IdleProcessor() : Processor("idle", nullptr) {}
    void progress() override {}
};

TEST(ProcessorHandle, printsLikeItsSocketWhatItIsFor) {
    EXPECT_EQ("ProcessorHandle\n\tControlled Processor UID: Type_mac_1",
              ProcessorHandle("Type_mac_1", std::make_shared<engine::Run>(), nullptr).toString());
    ProcessorSocket socket("name", "Type_mac_1", std::make_unique<IdleProcessor>());
    EXPECT_EQ("ProcessorSocket: name\n" + socket.getProcessor()->toString(), socket.toString());
}

TEST(ProcessorHandleManager, refusesToBindAHandleTwice) {
    ProcessorHandleManager manager;
    ProcessorSocket first("first", "id", std::make_unique<IdleProcessor>());
    ProcessorSocket second("second", "id", std::make_unique<IdleProcessor>());
    ProcessorHandle &handle = *manager.getHandle(first);
    support::LogRecorder log;
    support::expectRefusal<exceptions::ResourceNotAvailable>(
        log, [&] { manager.getHandle(second); }, "engine::processing::ProcessorHandleManager::enableHandle",
        "Processor handle with unique ID 'id' is already bound and cannot be bind to processor socket: second");
    handle.start();
    EXPECT_TRUE(first.getProcessor()->isProcessingActive());
    EXPECT_FALSE(second.getProcessor()->isProcessingActive());
    EXPECT_TRUE(manager.deactivateProcessorHandle(first));
    EXPECT_FALSE(handle.isProcessingActive());
    EXPECT_EQ(&handle, manager.getHandle(second));
    EXPECT_EQ(log.lines().back(), "D engine::processing::ProcessorHandleManager::enableHandle Processor handle with "
                                  "unique ID ' \"id\" ' reactivated to processor socket:  \"second\"");
}

TEST(ProcessorHandleManager, keepsUnboundHandlesInByteOrderOfTheirUniqueIds) {
    ProcessorHandleManager manager;
    const std::string heading = "ProcessorHandleManager\n\tList of managed processor handles (UID's):\n";
    EXPECT_EQ(heading, manager.toString());
    for (const char *id : {"b_2", "a_1", "b_10"}) {
        ProcessorSocket socket("name", id, std::make_unique<IdleProcessor>());
        const support::LogRecorder log;
        EXPECT_FALSE(manager.deactivateProcessorHandle(socket));
        EXPECT_EQ(Lines{"W engine::processing::ProcessorHandleManager::deactivateProcessorHandle Processor handle with "
                        "unique ID ' \"" +
                        std::string(id) +
                        "\" ' is not available and cannot be deactiaved by processor socket:  \"name\""},
                  log.warnings());
        manager.getHandle(socket);
        EXPECT_TRUE(manager.deactivateProcessorHandle(socket));
    }
    EXPECT_EQ(heading + "\t\ta_1\n\t\tb_10\n\t\tb_2\n", manager.toString());
}

} // namespace
