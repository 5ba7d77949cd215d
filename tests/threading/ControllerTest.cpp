#include "threading/Controller.h"

#include <future>
#include <memory>
#include <sstream>
#include <thread>

#include <gtest/gtest.h>

#include "support/LogRecorder.h"
#include "threading/Worker.h"

namespace {

using Lines = std::vector<std::string>;

/// What happened to a worker, and where; outlives it.
struct Story {
    std::promise<void> progressEntered;
    std::thread::id progressThread;
    std::thread::id endThread;
    std::thread::id deletionThread;
};

class ProbeWorker : public threading::Worker {
public:
    /// @param blocks whether progress() waits for end(), as a processing loop does
    ProbeWorker(Story &story, bool blocks) : Worker("probe", nullptr), story(story), blocks(blocks) {}
    ~ProbeWorker() override { story.deletionThread = std::this_thread::get_id(); }

    std::string toString() const override { return "ProbeWorker"; }
    void end() override {
        story.endThread = std::this_thread::get_id();
        ended.set_value();
    }
    void progress() override {
        story.progressThread = std::this_thread::get_id();
        story.progressEntered.set_value(); // throws when it runs again
        if (blocks) {
            ended.get_future().wait();
        }
    }

private:
    Story &story;
    bool blocks;
    std::promise<void> ended;
};

class ControllerEnd : public testing::TestWithParam<bool> {};

TEST_P(ControllerEnd, deletesTheWorkerOnItsOwnThreadBeforeItReturns) {
    const support::LogRecorder log;
    std::ostringstream threadId;
    threadId << static_cast<const void *>(QThread::currentThreadId());
    Story story;
    {
        const threading::Controller controller(std::make_unique<ProbeWorker>(story, GetParam()));
        story.progressEntered.get_future().wait();
    }
    EXPECT_EQ(std::this_thread::get_id(), story.endThread);
    EXPECT_EQ(story.progressThread, story.deletionThread);
    EXPECT_EQ((Lines{"D threading::Worker::Worker \"probe\" Initialized",
                     "D threading::Worker::registerThreadChilds \"probe\" Method not derived. No extra thread childs "
                     "will be added to thread " +
                         threadId.str(),
                     "D threading::Controller::~Controller \"probe\" Quit worker thread...",
                     "D threading::Worker::~Worker \"probe\" DELETED",
                     "D threading::Controller::~Controller \"probe\" Worker thread ended"}),
              log.lines());
}

INSTANTIATE_TEST_SUITE_P(WhetherProgressReturnsByItselfOrAtTheEnd, ControllerEnd, testing::Bool());

TEST(Controller, losesNoWorkerHoweverSoonItGoes) {
    for (int turn = 0; turn < 300; ++turn) {
        Story story;
        { const threading::Controller controller(std::make_unique<ProbeWorker>(story, turn % 2 == 0)); }
        ASSERT_NE(std::thread::id(), story.deletionThread);
        ASSERT_NE(std::this_thread::get_id(), story.deletionThread);
    }
}

TEST(Controller, leavesTheWorkerOfAHolderToTheHolder) {
    Story story;
    auto worker = std::make_unique<ProbeWorker>(story, false);
    { const threading::Controller controller(*worker); }
    EXPECT_EQ(std::this_thread::get_id(), story.endThread);
    EXPECT_EQ(std::thread::id(), story.deletionThread);
    worker.reset();
    EXPECT_EQ(std::this_thread::get_id(), story.deletionThread);
}

TEST(Controller, warnsAtBothEndsOfItsLifeThatItHasNoWorker) {
    const support::LogRecorder log;
    { const threading::Controller controller(nullptr); }
    EXPECT_EQ((Lines{"W threading::Controller::Controller The given worker cannot be controlled! Nullpointer passed!",
                     "W threading::Controller::~Controller Controller not initialized!"}),
              log.lines());
}

} // namespace
