#include <QCoreApplication>

#include <gtest/gtest.h>

#include "support/LogRecorder.h"
#include "support/NetworkNamespace.h"

namespace {

/// A queued call that Qt lost, or an object that it found misused, fails the test that caused it.
class QtFaults : public testing::EmptyTestEventListener {
    void OnTestEnd(const testing::TestInfo & /*test*/) override {
        for (const std::string &fault : support::LogRecorder::takeFaults()) {
            ADD_FAILURE() << fault;
        }
    }
};

} // namespace

int main(int argc, char **argv) {
    support::enterNetworkNamespace();
    support::LogRecorder::install();
    QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new QtFaults);
    return RUN_ALL_TESTS();
}
