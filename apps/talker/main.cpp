#include <algorithm>
#include <atomic>
#include <cctype>
#include <csignal>
#include <iostream>
#include <system_error>

#include <QCoreApplication>

#include "talker/RawSocket.h"
#include "talker/Refusal.h"
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
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

/// One line, whatever a file name or an argument in the text contains.
int complain(std::string text, int status) {
    std::replace_if(
        text.begin(), text.end(), [](unsigned char character) { return std::iscntrl(character) != 0; }, '?');
    std::cerr << "sonvex-talker: " << text << std::endl;
    return status;
}

int talk(const QStringList &arguments) {
    const talker::TalkerOptions options = talker::TalkerOptions::parse(arguments);
    talker::RawSocket socket(options.device);
    talker::Talker talker(options, socket);
    stopOnSignals();
    int status = 0;
    try {
        talker.run(stopRequested);
    } catch (const std::system_error &error) {
        status = complain(error.what(), 1);
    }
    std::cout << talker.getReport().toString() << std::flush;
    return status;
}

} // namespace

int main(int argc, char *argv[]) {
    const QCoreApplication application(argc, argv);
    try {
        return talk(QCoreApplication::arguments());
    } catch (const talker::Refusal &refusal) {
        return complain(refusal.what(), 2);
    } catch (const std::exception &error) {
        return complain(error.what(), 1);
    }
}
