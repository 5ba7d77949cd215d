#pragma once

#include <string>

namespace discovery {
struct Progress;
} // namespace discovery

namespace analyser {

/// How far the listening at an adapter is: a line on the terminal of the error output that is written over, and gone in
/// the end. Nothing, if that is no terminal.
class ProgressLine {
public:
    explicit ProgressLine(const std::string &device);
    ~ProgressLine();
    ProgressLine(const ProgressLine &) = delete;
    ProgressLine &operator=(const ProgressLine &) = delete;

    void show(const discovery::Progress &progress);

private:
    const std::string device;
    const bool isTerminal;
    bool shown = false;
};

} // namespace analyser
