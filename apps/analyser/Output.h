#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace analyser {

/// Where results go: a file or the standard output, unbuffered.
class Output {
public:
    /// @param file empty for the standard output @throws Refusal if it can't be written
    explicit Output(const std::string &file);
    ~Output();
    Output(const Output &) = delete;
    Output &operator=(const Output &) = delete;

    /// Writes all of it before it returns. After a failure nothing is written any more.
    void write(std::string_view text);
    /// The system's reason for the first write that failed; empty while all is well.
    const std::string &failure() const { return error; }
    /// @param function is called once, inside the write that fails
    void onFailure(std::function<void()> function) { failureHandler = std::move(function); }

    int descriptor() const { return fd; }

private:
    void fail(const std::string &reason);
    bool waitsInVain() const;

    int fd;
    std::string error;
    std::function<void()> failureHandler;
};

} // namespace analyser
