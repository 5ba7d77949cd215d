#pragma once

#include <stdexcept>
#include <string>

namespace common {

/// Why a program can't do what it was asked to: one line for the user, and the status that it ends with.
class Refusal : public std::runtime_error {
public:
    /// The command line can't be followed.
    static constexpr int usage = 2;
    /// The machine doesn't allow it.
    static constexpr int failure = 1;

    explicit Refusal(const std::string &line, int newExitStatus = usage);

    int exitStatus() const { return status; }

private:
    int status;
};

} // namespace common
