#include "support/LogRecorder.h"

#include <algorithm>
#include <iterator>
#include <mutex>

#include <QString>

#include "support/SparedMemory.h"
#include "support/ThreadSanitizer.h"

namespace support {

namespace {

struct State {
    std::mutex mutex;
    bool recording = false;
    std::vector<std::string> lines;
    std::vector<std::string> faults;
};

/// Never destroyed: the library logs until the very end of the process.
State &state() {
    static State &instance = *new State;
    return instance;
}

void handleLine(QtMsgType type, const QMessageLogContext &context, const QString &text) {
    const SparedMemory spared;
    const std::string line = (type == QtDebugMsg ? "D " : "W ") + text.toStdString();
    State &current = state();
    const Unseen unseen; // or each line would order its thread with all others
    const std::lock_guard<std::mutex> lock(current.mutex);
    if (current.recording) {
        current.lines.push_back(line);
    }
    if (context.category == nullptr) { // which handlers and filters of a host look at
        current.faults.push_back("without category: " + line);
    }
    for (const char *fault : {"Cannot queue arguments", "QObject::", "QTimer::", "QThread:", "QMetaType"}) {
        if (line.compare(2, std::string(fault).size(), fault) == 0 || line.find("Cannot queue") != std::string::npos) {
            current.faults.push_back(line);
            break;
        }
    }
}

} // namespace

LogRecorder::LogRecorder() {
    const std::lock_guard<std::mutex> lock(state().mutex);
    state().recording = true;
    state().lines.clear();
}

LogRecorder::~LogRecorder() {
    const std::lock_guard<std::mutex> lock(state().mutex);
    state().recording = false;
}

std::vector<std::string> LogRecorder::lines() const {
    const SparedMemory spared;
    const std::lock_guard<std::mutex> lock(state().mutex);
    return state().lines;
}

std::vector<std::string> LogRecorder::warnings() const {
    const SparedMemory spared;
    std::vector<std::string> result;
    for (const std::string &line : lines()) {
        if (line.front() == 'W') {
            result.push_back(line);
        }
    }
    return result;
}

int LogRecorder::count(const std::string &text) const {
    const SparedMemory spared;
    int found = 0;
    for (const std::string &line : lines()) {
        found += line.find(text) != std::string::npos ? 1 : 0;
    }
    return found;
}

std::vector<std::string> LogRecorder::stepsOf(const std::vector<std::string> &texts) const {
    std::vector<std::string> steps;
    for (const std::string &line : lines()) {
        std::copy_if(texts.begin(), texts.end(), std::back_inserter(steps),
                     [&line](const std::string &text) { return line.find(text) != std::string::npos; });
    }
    return steps;
}

void LogRecorder::clear() {
    const std::lock_guard<std::mutex> lock(state().mutex);
    state().lines.clear();
}

void LogRecorder::install() {
    qInstallMessageHandler(handleLine);
}

std::vector<std::string> LogRecorder::takeFaults() {
    const std::lock_guard<std::mutex> lock(state().mutex);
    return std::exchange(state().faults, {});
}

} // namespace support
