#pragma once

#include <string>
#include <vector>

#include <QProcess>

namespace support {

/// A program that runs beside the test, in the same namespace; killed if the test ends first.
class Program {
public:
    struct Result {
        int exitStatus; ///< -1 if it crashed, could not be started or did not end in time
        std::string out;
        std::string err;
    };

    Program(const std::string &path, const std::vector<std::string> &arguments);
    ~Program();

    void signal(int number);
    bool hasEnded();
    /// Whether it waits for a moment or an event.
    bool isAsleep() const;

    /// Waits for its end, so many milliseconds at most.
    Result wait(int patience = 60'000);

private:
    QProcess process_;
};

/// Expects this exit status, one line that holds @p reason and no output.
void expectRefusal(const Program::Result &result, int exitStatus, const std::string &reason);

} // namespace support
