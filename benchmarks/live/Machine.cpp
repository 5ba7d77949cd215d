#include "live/Machine.h"

#include <fstream>
#include <iterator>
#include <sstream>
#include <thread>
#include <vector>

#include <sys/resource.h>
#include <unistd.h>

#include "live/SendTime.h"

namespace live {

namespace {

double toSeconds(const timeval &time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

double now() {
    return static_cast<double>(SendTime::now()) * 1e-9;
}

} // namespace

OthersLoad::OthersLoad() : begin(now()), busyBefore(busySeconds()), ownBefore(ownSeconds()) {}

double OthersLoad::cores() const {
    return ((busySeconds() - busyBefore) - (ownSeconds() - ownBefore)) / (now() - begin);
}

double OthersLoad::busySeconds() {
    std::ifstream file("/proc/stat");
    std::string name;
    double user = 0;
    double nice = 0;
    double system = 0;
    double idle = 0;
    double waiting = 0;
    double interrupts = 0;
    double softInterrupts = 0;
    double stolen = 0;
    file >> name >> user >> nice >> system >> idle >> waiting >> interrupts >> softInterrupts >> stolen;
    return (user + nice + system + interrupts + softInterrupts + stolen) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

double OthersLoad::ownSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return toSeconds(usage.ru_utime) + toSeconds(usage.ru_stime);
}

std::string describeMachine() {
    std::ifstream file("/proc/loadavg");
    std::string one;
    std::string five;
    std::string fifteen;
    file >> one >> five >> fifteen;
    return std::to_string(std::thread::hardware_concurrency()) + " cores, load average " + one + " " + five + " " +
           fifteen;
}

DropsOnTheWay DropsOnTheWay::sum(const std::string &adapter, const std::string &farEnd) {
    DropsOnTheWay drops{};
    constexpr std::size_t received = 3;
    constexpr std::size_t sent = 11;
    std::ifstream adapters("/proc/net/dev");
    for (std::string line; std::getline(adapters, line);) {
        const std::size_t colon = line.find(':');
        const std::string name = line.substr(line.find_first_not_of(' '), colon - line.find_first_not_of(' '));
        if (colon == std::string::npos || (name != adapter && name != farEnd)) {
            continue;
        }
        std::istringstream fields(line.substr(colon + 1));
        const std::vector<std::uint64_t> values{std::istream_iterator<std::uint64_t>(fields), {}};
        drops.adapters += values.at(name == adapter ? received : sent);
    }
    std::ifstream cores("/proc/net/softnet_stat");
    for (std::string line; std::getline(cores, line);) {
        std::istringstream fields(line);
        std::uint64_t processed = 0;
        std::uint64_t dropped = 0;
        fields >> std::hex >> processed >> dropped;
        drops.backlog += dropped;
    }
    return drops;
}

} // namespace live
