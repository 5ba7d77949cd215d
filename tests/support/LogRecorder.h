#pragma once

#include <string>
#include <vector>

namespace support {

/**
 * Records the lines that the library logs while it lives, from all threads; one at a time. A line is "D " or "W " for
 * its level and its text. It takes the log over from the process's handler, which keeps the lines off the terminal.
 */
class LogRecorder {
public:
    LogRecorder();
    ~LogRecorder();
    LogRecorder(const LogRecorder &) = delete;
    LogRecorder &operator=(const LogRecorder &) = delete;

    std::vector<std::string> lines() const;
    std::vector<std::string> warnings() const;
    /// How many lines hold @p text.
    int count(const std::string &text) const;
    /// Which of the texts the lines hold, line by line.
    std::vector<std::string> stepsOf(const std::vector<std::string> &texts) const;
    void clear();

    /// Installs the handler for the whole process, once, at the beginning of main.
    static void install();
    /// Lines of Qt's own that tell of a lost call, a missing slot or a misused timer, since the last call.
    static std::vector<std::string> takeFaults();
};

} // namespace support
