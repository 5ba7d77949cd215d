#include <QProcess>
#include <QString>

#include <gtest/gtest.h>

#include "support/Program.h"

namespace {

struct Outcome {
    int status;
    std::string output;
    std::string errors;
};

Outcome run(const std::string &arguments) {
    QProcess process;
    process.start(QStringLiteral(ANALYSER_PROGRAM),
                  QString::fromStdString(arguments).split(QLatin1Char(' '), Qt::SkipEmptyParts));
    EXPECT_TRUE(process.waitForFinished()) << "no end: " << arguments;
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    return {process.exitCode(), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
}

const std::string good = "monitor --device lo --stream 020000000001 --waveform 0:480 --seconds 1 ";

struct RefusedRun {
    std::string arguments;
    const char *expectedPart;
};

class RefusedRuns : public testing::TestWithParam<RefusedRun> {};

TEST_P(RefusedRuns, endWithOneLineAndStatusTwo) {
    const auto outcome = run(GetParam().arguments);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors.find('\n'), outcome.errors.size() - 1) << outcome.errors;
    EXPECT_NE(outcome.errors.find(GetParam().expectedPart), std::string::npos) << outcome.errors;
}

INSTANTIATE_TEST_SUITE_P(
    Program, RefusedRuns,
    testing::Values(RefusedRun{"", "command"}, RefusedRun{good + "--unheard-of", "unheard-of"},
                    RefusedRun{"monitor --device nowhere0 --stream 020000000001 --waveform 0:480", "known are: "},
                    RefusedRun{"monitor --device bad\nname --stream 020000000001 --waveform 0:480", "'bad name'"},
                    RefusedRun{good + "--output /nowhere/at/all", "/nowhere/at/all"},
                    RefusedRun{good + "--log /nowhere/at/all", "/nowhere/at/all"}));

TEST(Program, withoutTheRightToCaptureNamesTheRemedy) {
    support::Program analyser("setpriv", {"--bounding-set=-net_raw", ANALYSER_PROGRAM, "monitor", "--device", "lo",
                                          "--stream", "020000000001", "--waveform", "0:480"});
    const auto outcome = analyser.wait();
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << outcome.err;
    EXPECT_NE(outcome.err.find("'sudo setpriv "), std::string::npos) << outcome.err;
}

TEST(Program, listsTheAdaptersWithoutAWordOfTheLibrarysLog) {
    const auto text = run("devices");
    EXPECT_EQ(text.status, 0);
    EXPECT_EQ(text.errors, "");
    EXPECT_NE(text.output.find(" lo "), std::string::npos) << text.output;
    EXPECT_NE(run("devices --format json").output.find("\"name\":\"lo\",\"description\":"), std::string::npos);
    EXPECT_NE(run("devices --verbose").errors.find("DEBUG "), std::string::npos);
}

TEST(Program, explainsItself) {
    EXPECT_NE(run("--version").output.find("1.6.0.3"), std::string::npos);
    EXPECT_NE(run("--help").output.find("monitor"), std::string::npos);
    EXPECT_NE(run("monitor --help").output.find("counted from 0"), std::string::npos);
}

} // namespace
