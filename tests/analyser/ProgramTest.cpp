#include <iterator>
#include <memory>
#include <sstream>

#include <gtest/gtest.h>

#include "support/Program.h"

namespace {

using support::expectRefusal;

support::Program::Result run(const std::string &arguments) {
    std::istringstream words(arguments);
    return support::Program(ANALYSER_PROGRAM, {std::istream_iterator<std::string>(words), {}}).wait();
}

const std::string good = "monitor --device lo --stream 020000000001 --waveform 0:480 --seconds 1 ";

TEST(Program, refusesWithOneLineAndStatusTwo) {
    expectRefusal(run(""), 2, "command");
    expectRefusal(run(good + "--unheard-of"), 2, "unheard-of");
    expectRefusal(run("monitor --device nowhere0 --stream 020000000001 --waveform 0:480"), 2, "known are: ");
    expectRefusal(run("streams --device nowhere0"), 2, "known are: ");
    expectRefusal(run("streams --device any"), 1, "no Ethernet frames");
    expectRefusal(run(good + "--output /nowhere/at/all"), 2, "/nowhere/at/all");
    expectRefusal(run(good + "--log /nowhere/at/all"), 2, "/nowhere/at/all");
    const std::vector<std::string> badName = {"monitor",      "--device",   "bad\nname", "--stream",
                                              "020000000001", "--waveform", "0:480"};
    expectRefusal(support::Program(ANALYSER_PROGRAM, badName).wait(), 2, "'bad name'");
}

TEST(Program, endsAndSaysSoWhenItCannotWrite) {
    const std::string endless = ANALYSER_PROGRAM " monitor --device lo --stream 020000000001 --waveform 0:480 ";
    const std::vector<std::pair<std::string, std::string>> table = {
        {endless + "--log /dev/full --output /dev/null", "cannot write the log: No space"},
        {endless + "--output /dev/full", "cannot write the output '/dev/full': No space"},
        {endless + "--format csv > /dev/full", "cannot write the output: No space"},
        {endless + "--output /dev/null --also json:/dev/full", "cannot write the output '/dev/full': No space"},
        {endless + "| true; exit ${PIPESTATUS[0]}", "cannot write the output: Broken pipe"},
        {ANALYSER_PROGRAM " devices > /dev/full", "cannot write the output: No space"},
        {ANALYSER_PROGRAM " streams --device lo --seconds 0.1 > /dev/full", "cannot write the output: No space"},
        {SONVEX_TALKER " --help > /dev/full", "cannot write the output: "}};
    std::vector<std::unique_ptr<support::Program>> programs;
    for (const auto &[command, expectedPart] : table) {
        programs.push_back(std::make_unique<support::Program>("bash", std::vector<std::string>{"-c", command}));
    }
    for (std::size_t i = 0; i < table.size(); ++i) {
        SCOPED_TRACE(table[i].first);
        const auto result = programs[i]->wait();
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_NE(result.err.find(table[i].second), std::string::npos) << result.err;
    }
}

TEST(Program, withoutTheRightToCaptureNamesTheRemedy) {
    for (const std::string &command : {good, std::string("streams --device lo")}) {
        const std::string unable = "setpriv --bounding-set=-net_raw " ANALYSER_PROGRAM " " + command;
        expectRefusal(support::Program("bash", {"-c", unable}).wait(), 1, "'sudo setpriv ");
    }
}

TEST(Program, listsTheAdaptersWithoutAWordOfTheLibrarysLog) {
    const auto text = run("devices");
    EXPECT_EQ(text.exitStatus, 0);
    EXPECT_EQ(text.err, "");
    EXPECT_NE(text.out.find(" lo "), std::string::npos) << text.out;
    EXPECT_NE(run("devices --format json").out.find("\"name\":\"lo\",\"description\":"), std::string::npos);
    EXPECT_NE(run("devices --verbose").err.find("DEBUG "), std::string::npos);
}

TEST(Program, explainsItself) {
    EXPECT_NE(run("--version").out.find("1.6.0.3"), std::string::npos);
    EXPECT_NE(run("--help").out.find("monitor"), std::string::npos);
    EXPECT_NE(run("monitor --help").out.find("counted from 0"), std::string::npos);
}

} // namespace
