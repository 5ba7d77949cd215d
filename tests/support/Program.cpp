#include "support/Program.h"

#include <algorithm>
#include <csignal>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

namespace support {

Program::Program(const std::string &path, const std::vector<std::string> &arguments) {
    QStringList list;
    std::transform(arguments.begin(), arguments.end(), std::back_inserter(list), QString::fromStdString);
    process_.start(QString::fromStdString(path), list);
    process_.waitForStarted();
}

Program::~Program() {
    process_.kill();
    process_.waitForFinished();
}

void Program::signal(int number) {
    ::kill(static_cast<pid_t>(process_.processId()), number);
}

bool Program::hasEnded() {
    process_.waitForFinished(0);
    return process_.state() == QProcess::NotRunning;
}

bool Program::isAsleep() const {
    std::ifstream file("/proc/" + std::to_string(process_.processId()) + "/stat");
    const std::string text(std::istreambuf_iterator<char>(file), {});
    return text.find(") S ") != std::string::npos;
}

Program::Result Program::wait(int patience) {
    // A short program may have ended already.
    const bool ended = process_.state() == QProcess::NotRunning || process_.waitForFinished(patience);
    const bool orderly =
        ended && process_.exitStatus() == QProcess::NormalExit && process_.error() != QProcess::FailedToStart;
    return {orderly ? process_.exitCode() : -1, process_.readAllStandardOutput().toStdString(),
            process_.readAllStandardError().toStdString()};
}

void expectRefusal(const Program::Result &result, int exitStatus, const std::string &reason) {
    EXPECT_EQ(result.exitStatus, exitStatus);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    EXPECT_NE(result.err.find(reason), std::string::npos) << result.err;
}

} // namespace support
