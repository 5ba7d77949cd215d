#include <QCoreApplication>

#include "analyser/DeviceList.h"
#include "analyser/LibraryLog.h"
#include "analyser/Monitor.h"
#include "analyser/StreamList.h"
#include "analyser/output/Output.h"
#include "common/Refusal.h"
#include "common/fillStandardDescriptors.h"
#include "common/runProgram.h"

namespace {

void prepareProcess() {
    common::fillStandardDescriptors();
    analyser::LibraryLog::install();
}

// The library logs and opens files while it is loaded, before any constructor of this program could keep its lines off
// the terminal and its files off the places of the standard outputs.
[[gnu::section(".preinit_array"), gnu::used]] void (*prepareFromTheStart)() = prepareProcess;

int execute(const analyser::Command &command) {
    if (const auto *monitor = std::get_if<analyser::MonitorOptions>(&command)) {
        analyser::LibraryLog::shared().configure(monitor->log);
        return analyser::Monitor(*monitor).run();
    }
    if (const auto *streams = std::get_if<analyser::StreamsOptions>(&command)) {
        analyser::LibraryLog::shared().configure(streams->log);
        analyser::listStreams(*streams);
        return 0;
    }
    analyser::Output output("");
    if (const auto *devices = std::get_if<analyser::DevicesOptions>(&command)) {
        analyser::LibraryLog::shared().configure(devices->log);
        analyser::listDevices(devices->format, output);
    } else {
        output.write(std::get<analyser::ShownText>(command).text);
    }
    if (!output.failure().empty()) {
        throw common::Refusal(output.failure(), common::Refusal::failure);
    }
    return 0;
}

} // namespace

int main(int argc, char *argv[]) {
    const QCoreApplication application(argc, argv);
    return common::runProgram([] { return execute(analyser::parseCommandLine(QCoreApplication::arguments())); });
}
