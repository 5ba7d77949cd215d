#include "process/DemoProcessor.h"

#include <cmath>
#include <memory>

#include <gtest/gtest.h>

#include "process/configuration/DemoConfig.h"
#include "support/LogRecorder.h"
#include "support/ProcessorRun.h"
#include "support/waitFor.h"

namespace {

class DemoProcessor : public testing::TestWithParam<unsigned> {};

TEST_P(DemoProcessor, deliversASineInStepsOfATenthRadianFromTheFirstPointOnUntilItIsStopped) {
    const support::LogRecorder log;
    process::DemoConfig config("sine", GetParam());
    process::Processor *processor = process::DemoProcessor::createInstance("tone", config);
    int finished = 0;
    QObject::connect(processor, &threading::Worker::finished, qApp, [&] { ++finished; });
    processor->start();
    support::ProcessorRun run(processor);
    ASSERT_TRUE(support::waitFor([&] { return run.results.size() >= 4; }));
    run->stop();
    run.settle();
    double phase = 0.0;
    for (sonvex::ChannelData &result : run.results) {
        const double y = static_cast<double>(GetParam()) * std::sin(phase);
        phase += 0.1;
        EXPECT_EQ("DemoProcessor (SinGen) - tone", result.getName());
        EXPECT_EQ(std::vector<double>{phase}, result.getVectorData().getX());
        EXPECT_EQ(std::vector<double>{y}, result.getVectorData().getY());
    }
    EXPECT_EQ(1, finished);
    const std::string context = "D process::DemoProcessor::progress \"DemoProcessor (SinGen) - tone\" ";
    EXPECT_EQ(1, log.count(context + " Processor ACTIVE"));
    EXPECT_EQ(1, log.count(context + "Processor FINISHED"));
}

// Amplitudes above 2^31 are unsigned and stay positive.
INSTANTIATE_TEST_SUITE_P(Amplitudes, DemoProcessor, testing::Values(0U, 5U, 3000000000U));

TEST(DemoProcessorThread, deliversNothingWhenItsThreadComesBeforeItsStart) {
    const support::LogRecorder log;
    process::DemoConfig config("sine", 1);
    support::ProcessorRun run(process::DemoProcessor::createInstance("tone", config));
    run.settle();
    run->start();
    run.settle();
    EXPECT_TRUE(run->isProcessingActive());
    EXPECT_TRUE(run.results.empty());
    EXPECT_EQ(1, log.count("Processor FINISHED"));
}

TEST(Processor, printsWhetherItIsActiveAndEndsInactive) {
    process::DemoConfig config("sine", 1);
    const std::unique_ptr<process::Processor> processor(process::DemoProcessor::createInstance("p", config));
    const std::string text = "Processor: DemoProcessor (SinGen) - p\n\tProcessor active (calculating?): ";
    const std::string configText = "\nDemoProcessor: sine\n\tAmplitude: 1";
    EXPECT_EQ(text + "0" + configText, processor->toString());
    processor->start();
    EXPECT_EQ(text + "1" + configText, processor->toString());
    processor->end();
    EXPECT_FALSE(processor->isProcessingActive());
}

} // namespace
