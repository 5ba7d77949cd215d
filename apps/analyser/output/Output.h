#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <unistd.h>

#include "analyser/output/Ending.h"
#include "common/FileDescriptor.h"

namespace analyser {

/// Where results go: a file or the standard output, unbuffered. Written by one thread at a time.
class Output {
public:
    /// @param name of a file; empty for the standard output @throws common::Refusal if it can't be written
    explicit Output(const std::string &name, std::shared_ptr<const Ending> ending = std::make_shared<Ending>());
    Output(const Output &) = delete;
    Output &operator=(const Output &) = delete;

    /// Empties the file, which until then is as it was before.
    void begin();
    /// Writes all of it before it returns. After a failure nothing is written any more.
    void write(std::string_view text);
    /// What could not be written and why, in a sentence; empty while all is well.
    std::string failure() const;
    /// @param function is called once, inside the write that fails
    void onFailure(std::function<void()> function) { failureHandler = std::move(function); }

    int descriptor() const { return file.get() < 0 ? STDOUT_FILENO : file.get(); }
    /// "the output", with its name if it has one.
    const std::string &title() const { return shownName; }

private:
    void fail(const std::string &reason);
    bool isTooLate();
    void waitForReader(std::optional<Ending::Clock::time_point> &lastMoment);

    const std::string shownName;
    common::FileDescriptor file;
    std::string error;
    std::function<void()> failureHandler;
    const std::shared_ptr<const Ending> ending;
    std::optional<Ending::Clock::time_point> urgentEnd; ///< of all writing
};

} // namespace analyser
