#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <unistd.h>

#include "common/FileDescriptor.h"

namespace analyser {

/// Where results go: a file or the standard output, unbuffered.
class Output {
public:
    /// @param file empty for the standard output @throws common::Refusal if it can't be written
    /// @param gaveUp whether the user wants the program to end; may be empty
    explicit Output(const std::string &file, std::function<bool()> gaveUp = {});
    Output(const Output &) = delete;
    Output &operator=(const Output &) = delete;

    /// Empties the file, which until then is as it was before.
    void begin();
    /// From then on, as after a request to end, a reader that takes nothing is waited for no longer than a second.
    void setDeadline(std::chrono::steady_clock::time_point moment) { deadline = moment; }
    /// Writes all of it before it returns. After a failure nothing is written any more.
    void write(std::string_view text);
    /// The system's reason for the first write that failed; empty while all is well.
    const std::string &failure() const { return error; }
    /// @param function is called once, inside the write that fails
    void onFailure(std::function<void()> function) { failureHandler = std::move(function); }

    int descriptor() const { return file.get() < 0 ? STDOUT_FILENO : file.get(); }

private:
    void fail(const std::string &reason);
    bool waitsInVain() const;

    common::FileDescriptor file;
    std::optional<std::chrono::steady_clock::time_point> deadline;
    std::string error;
    std::function<void()> failureHandler;
    const std::function<bool()> gaveUp;
};

} // namespace analyser
