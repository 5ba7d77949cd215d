#pragma once

#include <functional>
#include <string>
#include <vector>

#include <sys/types.h>
#include <termios.h>

namespace support {

/// A program in the foreground of a terminal of its own, below a leader that stands for the shell: signals of keys
/// reach it, and its end leaves the terminal as it is. Killed if the test ends first.
class Terminal {
public:
    struct Size {
        unsigned short columns;
        unsigned short rows;
    };

    Terminal(Size size, const std::string &path, const std::vector<std::string> &arguments);
    ~Terminal();
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;

    /// As on its keyboard; "\x03" is Ctrl-C.
    void type(const std::string &keys) const;
    void resize(Size size) const;
    void signal(int number) const;
    termios modes() const;

    /// All that it was given so far, read by the two functions below.
    const std::string &shown() const { return text; }
    /// Reads until @p condition holds. @return false if it does not within 20 s
    bool waitFor(const std::function<bool()> &condition);
    /// Waits until the program has stopped or ended. @return its status as of waitpid; -1 if that lasts over 40 s
    int waitForChange(bool reads = true);

private:
    void read(int milliseconds);

    int screen = -1;   ///< the side of who looks at it
    int statuses = -1; ///< from the leader
    pid_t leader = -1;
    pid_t program = -1;
    std::string text;
};

} // namespace support
