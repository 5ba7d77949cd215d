#include <atomic>
#include <cerrno>
#include <csignal>
#include <iostream>
#include <stdexcept>
#include <system_error>

#include <QCoreApplication>

#include "common/Refusal.h"
#include "common/complain.h"
#include "common/fillStandardDescriptors.h"
#include "common/runProgram.h"
#include "talker/RawSocket.h"
#include "talker/Replay.h"
#include "talker/Talker.h"
#include "talker/TalkerOptions.h"

namespace {

std::atomic<bool> stopRequested = {false};
static_assert(std::atomic<bool>::is_always_lock_free, "it is set by a signal handler");

extern "C" void requestStop(int /*signal*/) {
    stopRequested = true;
}

void stopOnSignals() {
    struct sigaction action = {};
    action.sa_handler = requestStop;
    action.sa_flags = static_cast<int>(SA_RESETHAND); // a second one ends the program at once
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    struct sigaction before = {};
    sigaction(SIGHUP, nullptr, &before);
    if (before.sa_handler != SIG_IGN) { // as nohup wants it
        sigaction(SIGHUP, &action, nullptr);
    }
}

int print(const std::string &text) {
    if (!(std::cout << text << std::flush)) {
        throw common::Refusal("cannot write the output: " + std::generic_category().message(errno),
                              common::Refusal::failure);
    }
    return 0;
}

/// @tparam Sender what sends by these options
template <class Sender, class Options>
int send(const Options &options) {
    talker::RawSocket socket(options.device);
    Sender sender(options, socket);
    stopOnSignals();
    int status = 0;
    try {
        sender.run(stopRequested);
    } catch (const std::runtime_error &error) {
        common::complain(error.what());
        status = common::Refusal::failure;
    }
    print(sender.getReport().toString());
    return status;
}

int execute(const talker::Command &command) {
    if (const auto *options = std::get_if<talker::TalkerOptions>(&command)) {
        return send<talker::Talker>(*options);
    }
    if (const auto *options = std::get_if<talker::ReplayOptions>(&command)) {
        return send<talker::Replay>(*options);
    }
    return print(std::get<std::string>(command));
}

} // namespace

int main(int argc, char *argv[]) {
    common::fillStandardDescriptors();
    const QCoreApplication application(argc, argv);
    return common::runProgram([] { return execute(talker::parseCommandLine(QCoreApplication::arguments())); });
}
