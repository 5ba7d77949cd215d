#include <gtest/gtest.h>

#include <sonvex/exceptions.h>

#include "process/configuration/DemoConfig.h"
#include "process/configuration/SoundLevelValueConfig.h"
#include "process/configuration/SpectrumConfig.h"
#include "process/configuration/WaveformConfig.h"
#include "support/LogRecorder.h"
#include "support/NoticeRecorder.h"
#include "support/refusalOf.h"

namespace {

using Lines = std::vector<std::string>;
using process::ProcessorConfigBase;
using process::SoundLevelValueConfig;
using process::SpectrumConfig;
using process::WaveformConfig;

const std::string created =
    " process::SampleProcessorConfigBase::SampleProcessorConfigBase \"conf\" Configuration created. ";

template <class Config>
void expectState(const Config &config, const std::string &clock, unsigned int rate) {
    EXPECT_EQ(config.getClockType(), clock);
    EXPECT_EQ(config.isInternalClockActive(), clock == "Internal clock");
    EXPECT_EQ(config.getRefreshRate(), rate);
}

template <class Interface>
void expectClocksOfFactories(const std::string &type, unsigned int sampleAmount) {
    support::LogRecorder log;
    const Interface &external = Interface::createInstance("conf", 1024);
    expectState(external, "External clock", 500);
    EXPECT_EQ(external.getProcessorType(), type);
    EXPECT_EQ(external.getSampleAmount(), sampleAmount);
    EXPECT_EQ(log.lines().front(), "D" + created + "External clock active");
    log.clear();
    expectState(Interface::createInstance("conf", 1024, 250), "Internal clock", 250);
    EXPECT_EQ(log.lines().front(), "D" + created + "Internal clock active");
    log.clear();
    const Interface &refused = Interface::createInstance("conf", 1024, 0);
    EXPECT_EQ(refused.toString(), external.toString());
    expectState(refused, "External clock", 500);
    EXPECT_EQ(log.lines().at(0), "W process::SampleProcessorConfigBase::SampleProcessorConfigBase \"conf\" "
                                 "The given refresh rate is invalid! External clock will be activated!");
    EXPECT_EQ(log.lines().at(1), "D" + created + "External clock active");
}

TEST(SampleProcessorConfigs, takeTheirClockFromTheFormOfTheirFactory) {
    expectClocksOfFactories<sonvex::iprocess::IWaveformConfig>("WaveformProcessor", 1024);
    expectClocksOfFactories<sonvex::iprocess::ISpectrumConfig>("SpectrumProcessor", 16384);
    expectClocksOfFactories<sonvex::iprocess::ISoundLevelValueConfig>("SoundLevelValueProcessor", 1024);
}

TEST(WaveformConfig, announcesOnlyWhatTakesEffect) {
    WaveformConfig config("conf", 1024, 250);
    support::NoticeRecorder notices(config);
    const support::LogRecorder log;
    config.setRefreshRate(0);
    EXPECT_EQ(log.lines(), Lines{"W process::SampleProcessorConfigBase::setRefreshRate Refresh rate equal to zero is "
                                 "not allowed! Refresh rate will be ignored!"});
    expectState(config, "Internal clock", 250);
    config.setRefreshRate(250);
    config.setClockType("Internal clock");
    config.setSampleAmount(1024);
    EXPECT_EQ(notices.take(), Lines{});
    config.setSampleAmount(0);
    EXPECT_EQ(notices.take(), Lines{"SampleAmountChanged"});
    EXPECT_EQ(config.getSampleAmount(), 0U);
    config.setRefreshRate(100);
    EXPECT_EQ(notices.take(), Lines{"ClockRefreshRateChanged"});
    config.setClockType("External clock");
    EXPECT_EQ(notices.take(), Lines{"External clock"});
    config.setRefreshRate(20);
    EXPECT_EQ(notices.take(), Lines{});
    for (const std::string clock : {"", "internal clock", "Internal clock ", "Internal clock"}) {
        config.setClockType(clock);
        EXPECT_EQ(notices.take(), Lines{clock});
        expectState(config, clock, 20);
    }
}

template <class Config>
void expectConvertRefusal(ProcessorConfigBase &given, const std::string &text) {
    const support::LogRecorder log;
    EXPECT_EQ(support::refusalOf<exceptions::InstanceNotConvertable>([&] { Config::convert(given); }).what(),
              "Argument from processor type '" + given.getProcessorType() + text +
                  " which is needed for the convert progress!");
    EXPECT_EQ(log.lines(), Lines{});
}

TEST(Convert, refusesOtherTypesWithTheTextOfEachKindAndNoLog) {
    WaveformConfig waveform("conf", 1);
    SpectrumConfig spectrum("conf", 1, "SpectrumProcessor");
    expectConvertRefusal<process::DemoConfig>(waveform, "' doesn't matchthe processor type 'DemoProcessor'");
    expectConvertRefusal<WaveformConfig>(spectrum, "' doesn't matchthe processor type 'WaveformProcessor'");
    expectConvertRefusal<SpectrumConfig>(waveform, "' doesn't matchthe processor type 'SpectrumProcessor'");
    expectConvertRefusal<SoundLevelValueConfig>(spectrum,
                                                "' doesn't match the processor type 'SoundLevelValueProcessor'");
}

} // namespace
