#pragma once

#include <stdexcept>
#include <string>

namespace analyser {

/// Why the program can't do what it was asked to: one line for the user, and the status that it ends with.
class Refusal : public std::runtime_error {
public:
    /// The command line can't be followed.
    static constexpr int usage = 2;
    /// The machine doesn't allow it.
    static constexpr int failure = 1;

    Refusal(int newExitStatus, const std::string &line);

    int exitStatus() const { return status; }

private:
    int status;
};

/// Says one line on the error output; control characters in @p line are replaced, so that it stays one.
void complain(const std::string &line);

} // namespace analyser
