#include "common/runProgram.h"

#include <csignal>
#include <exception>

#include "common/Refusal.h"
#include "common/complain.h"

namespace common {

int runProgram(const std::function<int()> &work) {
    std::signal(SIGPIPE, SIG_IGN); // a broken pipe shows when it is written to
    try {
        return work();
    } catch (const Refusal &refusal) {
        complain(refusal.what());
        return refusal.exitStatus();
    } catch (const std::exception &error) {
        complain(error.what());
        return Refusal::failure;
    }
}

} // namespace common
